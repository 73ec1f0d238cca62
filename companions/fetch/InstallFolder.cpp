#include "companions/fetch/InstallFolder.h"

#include "companions/fetch/FileFaults.h"
#include "companions/fetch/Texts.h"
#include "foundation/Exceptions.h"
#include "platform/base/FileCalls.h"
#include "platform/base/PathSwap.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

using namespace Qt::StringLiterals;
using Platform::CFileState;

namespace {

constexpr int c_nForgottenMilliseconds = 24 * 60 * 60 * 1000;
const QString c_strWorkName = u".vorel-fetch"_s;
const QString c_strLockName = u"/lock"_s;
const QString c_strNewName = u"/new"_s;
const QString c_strOldName = u"/old"_s;

/// A folder that is closed to its owner can't be emptied.
void OpenTree(const QString& strFolder) {
    QFile::setPermissions(strFolder, QFile::permissions(strFolder) | QFile::ReadOwner | QFile::WriteOwner |
                                         QFile::ExeOwner);
    QDirIterator below(strFolder, QDir::Dirs | QDir::NoSymLinks | QDir::Hidden | QDir::NoDotAndDotDot);
    while (below.hasNext())
        OpenTree(below.next());
}

/// A link goes itself, never what it leads to.
void RemoveTree(const QString& strPath) {
    const QFileInfo info(strPath);
    if (info.isSymLink() || !info.isDir()) {
        QFile::remove(strPath);
    } else if (!QDir(strPath).removeRecursively()) {
        OpenTree(strPath);
        QDir(strPath).removeRecursively();
    }
}

bool OnOneVolume(const QString& strA, const QString& strB) {
    CFileState a;
    CFileState b;
    return Platform::GetFileState(QFile::encodeName(strA), a) == 0 &&
           Platform::GetFileState(QFile::encodeName(strB), b) == 0 && a.nDevice == b.nDevice;
}

QString FolderBelow(const QString& strFolder, const QString& strName) {
    const QStringList names =
        QDir(strFolder).entryList({strName}, QDir::Dirs | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    return names.isEmpty() ? QString() : strFolder + u'/' + names.first();
}

bool HasPages(const QString& strFolder) {
    const QString strEht = FolderBelow(strFolder, u"eht"_s);
    const QString strPages = strEht.isEmpty() ? QString() : FolderBelow(strEht, u"htm"_s);
    return !strPages.isEmpty() && !QDir(strPages).entryList({u"*.htm"_s}, QDir::Files).isEmpty();
}

} // namespace

CInstallFolder::CInstallFolder(const QString& strTargetFolder)
    : m_strTarget(strTargetFolder), m_strTemplates(QFileInfo(strTargetFolder).path()) {
    if (!QDir().mkpath(m_strTemplates) || !QFileInfo(m_strTemplates).isWritable())
        ThrowFileFault(m_strTemplates, EACCES);
    const QString strAbove = QFileInfo(m_strTemplates).path();
    if ((!OnOneVolume(strAbove, m_strTemplates) || !Occupy(strAbove + u'/' + c_strWorkName)) &&
        !Occupy(m_strTemplates + u'/' + c_strWorkName))
        ThrowFileFault(m_strTemplates, EACCES);
    PutInOrder();
    if (const int nError = Platform::MakeFolder(QFile::encodeName(NewFolder())))
        ThrowFileFault(NewFolder(), nError);
}

CInstallFolder::~CInstallFolder() {
    for (const QString& strPath : {ArchivePath(), NewFolder()})
        RemoveTree(strPath);
    QDir().rmdir(m_strWork + c_strOldName);
    m_pLock->unlock();
    QDir().rmdir(m_strWork);
}

QString CInstallFolder::ArchivePath() const {
    return m_strWork + u"/archive"_s;
}

QString CInstallFolder::NewFolder() const {
    return m_strWork + c_strNewName;
}

/// False when this place can't be used at all.
bool CInstallFolder::Occupy(const QString& strWork) {
    const int nError = Platform::MakeFolder(QFile::encodeName(strWork));
    CFileState state;
    if (nError != 0 &&
        (nError != EEXIST || Platform::GetFileState(QFile::encodeName(strWork), state, false) != 0 ||
         !state.bFolder || state.bLink))
        return false;
    auto pLock = std::make_unique<QLockFile>(strWork + c_strLockName);
    // One that was killed here is known by its process; of another machine only the time can tell.
    pLock->setStaleLockTime(c_nForgottenMilliseconds);
    if (!pLock->tryLock()) {
        if (pLock->error() == QLockFile::LockFailedError)
            throw Torvane::CRunException(FetchText::c_strBusy);
        return false;
    }
    m_strWork = strWork;
    m_pLock = std::move(pLock);
    return true;
}

void CInstallFolder::PutInOrder() {
    // A template that was taken away and whose successor never came.
    const QString strOld = m_strWork + c_strOldName;
    const QStringList names =
        QDir(strOld).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& strName : names) {
        const int nError = Platform::MovePath(QFile::encodeName(strOld + u'/' + strName),
                                              QFile::encodeName(m_strTemplates + u'/' + strName));
        // Taken means that the successor did come.
        if (nError != 0 && nError != EEXIST)
            ThrowFileFault(m_strTemplates + u'/' + strName, nError);
    }
    for (const QString& strPath : {strOld, NewFolder(), ArchivePath()})
        RemoveTree(strPath);
}

void CInstallFolder::Install(const QString& strFinished) {
    const QByteArray finished = QFile::encodeName(strFinished);
    const QByteArray target = QFile::encodeName(m_strTarget);
    if (const int nError = Platform::FlushVolume(finished))
        ThrowFileFault(m_strTarget, nError);
    CFileState old;
    if (Platform::GetFileState(target, old, false) != 0) {
        if (const int nError = Platform::MovePath(finished, target))
            ThrowFileFault(m_strTarget, nError);
    } else if (!old.bFolder && !old.bLink) {
        ThrowFileFault(m_strTarget, EEXIST);
    } else {
        // A folder that can't be written can't be moved to another one.
        Platform::MakeWritable(target);
        Replace(finished, target);
    }
}

void CInstallFolder::Replace(const QByteArray& finished, const QByteArray& target) {
    const int nExchange = Platform::ExchangePaths(finished, target);
    if (nExchange == 0)
        return;
    if (nExchange != EINVAL && nExchange != ENOSYS)
        ThrowFileFault(m_strTarget, nExchange);
    const QString strOldFolder = m_strWork + c_strOldName;
    const QByteArray away = QFile::encodeName(strOldFolder + u'/' + QFileInfo(m_strTarget).fileName());
    int nError = Platform::MakeFolder(QFile::encodeName(strOldFolder));
    if (nError == 0)
        nError = Platform::MovePath(target, away);
    if (nError == 0) {
        nError = Platform::MovePath(finished, target);
        if (nError != 0)
            Platform::MovePath(away, target);
    }
    if (nError != 0)
        ThrowFileFault(m_strTarget, nError);
    RemoveTree(strOldFolder);
}

QString FindTemplate(const QString& strFolder) {
    if (HasPages(strFolder))
        return strFolder;
    QStringList found;
    const QStringList names = QDir(strFolder).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& strName : names) {
        if (HasPages(strFolder + u'/' + strName))
            found.append(strFolder + u'/' + strName);
    }
    if (found.size() != 1)
        throw Torvane::CRunException(FetchText::c_strNoTemplate);
    return found.first();
}
