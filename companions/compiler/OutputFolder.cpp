#include "companions/compiler/OutputFolder.h"

#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStorageInfo>

#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

const QString c_strList = u"vorel-site.json"_s;
const QString c_strTemporaryFolder = u".vorel-tmp"_s;
const QString c_strLock = u".vorel-lock"_s;
constexpr qint64 c_nFullDisk = qint64{64} * 1024;
/// The names of far more files than a site has. Without its list all that is there counts as a person's own.
constexpr qint64 c_nMaxList = qint64{64} << 20;

/// The path with every link resolved, also of a folder that is yet to be made.
QString Canonical(const QString& strPath) {
    QString strHead = QDir::cleanPath(QFileInfo(strPath).absoluteFilePath());
    QString strTail;
    while (!QFileInfo::exists(strHead) && strHead.size() > 1) {
        strTail = u'/' + QFileInfo(strHead).fileName() + strTail;
        strHead = QFileInfo(strHead).path();
    }
    const QString strReal = QFileInfo(strHead).canonicalFilePath();
    return strReal == "/"_L1 && !strTail.isEmpty() ? strTail : strReal + strTail;
}

bool IsWithin(const QString& strPath, const QString& strFolder) {
    return strPath == strFolder ||
           strPath.startsWith(strFolder.endsWith(u'/') ? strFolder : strFolder + u'/');
}

bool IsSafeName(const QString& strName) {
    const QStringList parts = strName.split(u'/');
    return !strName.isEmpty() && !parts.contains(QString()) && !parts.contains(u"."_s) &&
           !parts.contains(u".."_s) && !strName.contains(u'\0');
}

} // namespace

COutputFolder::COutputFolder(const QString& strFolder, const QString& strCourseFolder,
                             const QString& strDataFolder)
    : m_strFolder(Canonical(strFolder)) {
    if (IsWithin(Canonical(strCourseFolder), m_strFolder) || IsWithin(m_strFolder, Canonical(strDataFolder)))
        throw Torvane::CRunException(CompilerText::c_strForbiddenOutput.arg(m_strFolder));
    if (!QDir().mkpath(m_strFolder))
        Fail(m_strFolder, QString());
    m_pLock = std::make_unique<QLockFile>(Target(c_strLock));
    if (!m_pLock->tryLock()) {
        if (m_pLock->error() == QLockFile::LockFailedError)
            throw Torvane::CRunException(CompilerText::c_strOutputBusy.arg(m_strFolder));
        Fail(m_strFolder, QString());
    }
    // What a killed compile left half written.
    if (!QFileInfo(Target(c_strTemporaryFolder)).isSymLink())
        QDir(Target(c_strTemporaryFolder)).removeRecursively();
    EnsureFolder(c_strTemporaryFolder);
    ReadList();
}

COutputFolder::~COutputFolder() {
    QDir(Target(c_strTemporaryFolder)).removeRecursively();
}

QString COutputFolder::Target(const QString& strName) const {
    return m_strFolder + u'/' + strName;
}

void COutputFolder::Fail(const QString& strPath, const QString& strReason) const {
    QString strWhy = strReason;
    const QFileInfo info(QFileInfo(strPath).path());
    const QStorageInfo storage(m_strFolder);
    if (storage.isValid() && storage.bytesAvailable() < c_nFullDisk)
        strWhy = CompilerText::c_strDiskFull;
    else if (strWhy.isEmpty() || (info.exists() && !info.isWritable()))
        strWhy = CompilerText::c_strNoPermission;
    throw Torvane::CRunException(CompilerText::c_strCannotWrite.arg(strPath, strWhy));
}

void COutputFolder::ReadList() {
    QFile file(Target(c_strList));
    if (!file.open(QIODevice::ReadOnly) || file.size() > c_nMaxList)
        return;
    const QJsonArray names =
        QJsonDocument::fromJson(file.read(file.size())).object().value("files"_L1).toArray();
    for (const auto& name : names) {
        if (IsSafeName(name.toString()))
            m_former.insert(name.toString());
    }
}

void COutputFolder::WriteList(const QSet<QString>& names) {
    QStringList sorted(names.begin(), names.end());
    sorted.sort();
    const QJsonObject list{{u"generator"_s, u"VorelCompiler"_s},
                           {u"files"_s, QJsonArray::fromStringList(sorted)}};
    const QString strTemporary = TemporaryPath();
    QFile file(strTemporary);
    const QByteArray bytes = QJsonDocument(list).toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        Fail(Target(c_strList), file.errorString());
    file.close();
    MoveIn(strTemporary, c_strList);
}

void COutputFolder::Announce(const QStringList& names) {
    // The list names the files before they exist: a compile that is killed halfway leaves nothing behind that
    // the next one would take for a person's own.
    for (const QString& strName : names) {
        if (!m_former.contains(strName))
            MakeRoom(strName);
        m_former.insert(strName);
    }
    WriteList(m_former);
}

void COutputFolder::MakeRoom(const QString& strName) {
    const QStringList parts = strName.split(u'/');
    QString strPart;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        strPart += (i ? u"/"_s : QString()) + parts[i];
        const QFileInfo info(Target(strPart));
        if (!info.exists() && !info.isSymLink())
            return;
        if (i + 1 == parts.size() || !info.isDir()) {
            if (info.isDir())
                Fail(Target(strName), CompilerText::c_strNameTaken);
            if (!m_former.contains(strPart))
                SetAside(strPart);
            else if (i + 1 < parts.size())
                QFile::remove(Target(strPart));
        }
    }
}

void COutputFolder::SetAside(const QString& strName) {
    QString strFree = strName + u".bak"_s;
    for (int n = 2; QFileInfo::exists(Target(strFree)); ++n)
        strFree = strName + u".bak"_s + QString::number(n);
    if (!QFile::rename(Target(strName), Target(strFree)))
        Fail(Target(strName), QString());
    m_notes.append(CompilerText::c_strSetAside.arg(strName, strFree));
}

void COutputFolder::EnsureFolder(const QString& strFolder) {
    if (strFolder.isEmpty() || m_folders.contains(strFolder))
        return;
    EnsureFolder(strFolder.left(qMax(strFolder.lastIndexOf(u'/'), qsizetype(0))));
    const QFileInfo info(Target(strFolder));
    if (info.isSymLink())
        throw Torvane::CRunException(CompilerText::c_strOutputIsLink.arg(strFolder));
    if (!info.isDir() && !QDir().mkdir(Target(strFolder)))
        Fail(Target(strFolder), QString());
    m_folders.insert(strFolder);
}

QString COutputFolder::TemporaryPath() {
    return Target(c_strTemporaryFolder) + u'/' + QString::number(++m_nTemporary);
}

void COutputFolder::MoveIn(const QString& strTemporary, const QString& strName) {
    EnsureFolder(strName.left(qMax(strName.lastIndexOf(u'/'), qsizetype(0))));
    std::error_code error;
    std::filesystem::rename(strTemporary.toStdString(), Target(strName).toStdString(), error);
    if (error)
        Fail(Target(strName), QString::fromLocal8Bit(error.message().c_str()));
}

void COutputFolder::Write(const QString& strName, const QByteArray& bytes) {
    if (!IsSafeName(strName))
        Fail(strName, QString());
    m_written.insert(strName);
    const QString strTarget = Target(strName);
    const QFileInfo info(strTarget);
    if (info.isFile() && !info.isSymLink() && info.size() == bytes.size()) {
        QFile present(strTarget);
        if (present.open(QIODevice::ReadOnly) && present.readAll() == bytes)
            return;
    }
    const QString strTemporary = TemporaryPath();
    QFile file(strTemporary);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        Fail(strTarget, file.errorString());
    file.close();
    MoveIn(strTemporary, strName);
}

void COutputFolder::Copy(const QString& strSourcePath, const QString& strName) {
    if (!IsSafeName(strName))
        Fail(strName, QString());
    m_written.insert(strName);
    const QFileInfo source(strSourcePath);
    const QFileInfo target(Target(strName));
    if (target.isFile() && !target.isSymLink() && target.size() == source.size() &&
        target.lastModified() == source.lastModified())
        return;
    const QString strTemporary = TemporaryPath();
    QFile file(strSourcePath);
    if (!file.open(QIODevice::ReadOnly))
        throw Torvane::CRunException(CompilerText::c_strCannotRead.arg(strSourcePath, file.errorString()));
    file.close();
    if (!file.copy(strTemporary))
        Fail(Target(strName), file.errorString());
    // The course may lie on a read-only medium; its site must be replaceable.
    QFile copy(strTemporary);
    copy.setPermissions(copy.permissions() | QFileDevice::WriteOwner);
    if (copy.open(QIODevice::ReadWrite))
        copy.setFileTime(source.lastModified(), QFileDevice::FileModificationTime);
    copy.close();
    MoveIn(strTemporary, strName);
}

void COutputFolder::RemoveStale(const QString& strName) {
    const QString strParent = strName.left(qMax(strName.lastIndexOf(u'/'), qsizetype(0)));
    // Not through a link: what lies behind it was never written here.
    if (Canonical(Target(strParent)) != (strParent.isEmpty() ? m_strFolder : Target(strParent)))
        return;
    const QFileInfo info(Target(strName));
    if (info.isFile() && !info.isSymLink())
        QFile::remove(Target(strName));
    for (QString strFolder = strParent; !strFolder.isEmpty();
         strFolder = strFolder.left(qMax(strFolder.lastIndexOf(u'/'), qsizetype(0)))) {
        // Only an empty folder goes.
        if (!QDir().rmdir(Target(strFolder)))
            break;
    }
}

void COutputFolder::Finish() {
    const QSet<QString> stale = m_former - m_written;
    for (const QString& strName : stale)
        RemoveStale(strName);
    WriteList(m_written);
}
