#include "companions/compiler/OutputFolder.h"

#include "companions/compiler/OutputList.h"
#include "companions/compiler/Sums.h"
#include "companions/compiler/Texts.h"
#include "companions/compiler/Workers.h"
#include "foundation/Exceptions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const QString c_strList = u".vorel-site"_s;
const QString c_strTemporaryFolder = u".vorel-tmp"_s;
const QString c_strLock = u".vorel-lock"_s;
/// The names of far more files than a site has. Without its list all that is there counts as a person's own.
constexpr qint64 c_nMaxList = qint64{256} << 20;
/// How many lines too many the list even of a small site may have before it is written anew.
constexpr qsizetype c_nSpareLines = 50;

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

QString ParentOf(const QString& strName) {
    return strName.left(qMax(strName.lastIndexOf(u'/'), qsizetype(0)));
}

/// False as well when either can't be read, or stop answers true.
bool HaveSameBytes(const QString& strOne, const QString& strOther, const std::function<bool()>& stop) {
    constexpr qint64 c_nPiece = qint64{1} << 20;
    QFile one(strOne);
    QFile other(strOther);
    if (!one.open(QIODevice::ReadOnly) || !other.open(QIODevice::ReadOnly) || one.size() != other.size())
        return false;
    while (!one.atEnd()) {
        const QByteArray piece = one.read(c_nPiece);
        if (piece.isEmpty() || piece != other.read(c_nPiece) || (stop && stop()))
            return false;
    }
    return true;
}

QString WhyNotWritten(int nError) {
    switch (nError) {
    case EEXIST:
    case EISDIR:
    case ENOTDIR:
    case ENOTEMPTY:
        return CompilerText::c_strNameTaken;
    default:
        return Platform::SystemErrorText(nError);
    }
}

QString WhatToDo(int nError) {
    switch (nError) {
    case EACCES:
    case EPERM:
    case EROFS:
    case ENAMETOOLONG:
        return CompilerText::c_strChooseAnother;
    case ENOSPC:
    case EDQUOT:
        return CompilerText::c_strMakeRoom;
    case ENOENT:
    case ESTALE:
        return CompilerText::c_strTakenAway;
    case EEXIST:
    case EISDIR:
        return CompilerText::c_strRenameIt;
    default:
        return QString();
    }
}

} // namespace

QString CannotWriteText(const QString& strPath, int nError) {
    return CompilerText::c_strCannotWrite.arg(strPath, WhyNotWritten(nError)) + WhatToDo(nError);
}

COutputFolder::COutputFolder(const QString& strFolder, const QString& strCourseFolder,
                             const QString& strDataFolder, const QString& strOwner,
                             const std::function<bool()>& stop)
    : m_strFolder(Canonical(strFolder)), m_strOwner(strOwner), m_strPlace(PlaceOf(strCourseFolder)) {
    if (IsWithin(Canonical(strCourseFolder), m_strFolder) || IsWithin(m_strFolder, Canonical(strDataFolder)))
        throw Torvane::CRunException(CompilerText::c_strForbiddenOutput.arg(m_strFolder));
    MakeFolders();
    if (const int nError = m_folder.Open(QFile::encodeName(m_strFolder)))
        Fail({}, nError);
    m_pLock = std::make_unique<QLockFile>(Target(c_strLock));
    // However long a compile takes. Who is killed leaves the number of a process that is gone.
    m_pLock->setStaleLockTime(0);
    if (!m_pLock->tryLock()) {
        if (m_pLock->error() == QLockFile::LockFailedError)
            throw Torvane::CRunException(CompilerText::c_strOutputBusy.arg(m_strFolder));
        Fail({}, m_pLock->error() == QLockFile::PermissionError ? EACCES : errno);
    }
    // First: in another course's site nothing is touched.
    ReadList(strOwner);
    // What a killed compile left half written.
    if (!QFileInfo(Target(c_strTemporaryFolder)).isSymLink())
        QDir(Target(c_strTemporaryFolder)).removeRecursively();
    EnsureFolder(c_strTemporaryFolder);
    LookAtFiles(stop);
}

COutputFolder::~COutputFolder() {
    Close();
}

void COutputFolder::Close() {
    if (!m_pLock)
        return;
    // First, since on a full disk this makes room for the list.
    QDir(Target(c_strTemporaryFolder)).removeRecursively();
    // Of a run that ended early: the next one needn't make again what is done.
    if (m_bListStands && !m_unlisted.isEmpty())
        m_folder.AppendToFile(QFile::encodeName(c_strList), m_unlisted);
    m_pLock.reset();
    RemoveEmpty();
}

void COutputFolder::MakeFolders() {
    for (QString strPath = m_strFolder; !QFileInfo::exists(strPath); strPath = QFileInfo(strPath).path())
        m_made.append(strPath);
    errno = 0;
    if (QDir().mkpath(m_strFolder))
        return;
    const int nError = errno != 0 ? errno : EACCES;
    RemoveEmpty();
    Fail({}, nError);
}

/// Of a compile that failed before it wrote anything.
void COutputFolder::RemoveEmpty() {
    for (const QString& strMade : std::as_const(m_made))
        QDir().rmdir(strMade);
}

QString COutputFolder::PlaceOf(const QString& strCourseFolder) {
    return QString::number(CSum().Add(Canonical(strCourseFolder)).Value(), 16);
}

QString COutputFolder::PlaceIn(const QString& strFolder) {
    constexpr qint64 c_nHead = 4096;
    QByteArray bytes;
    const QString strList = strFolder + u'/' + c_strList;
    if (Platform::ReadFileBytes(QFile::encodeName(strList), bytes, c_nHead) != 0)
        return QString();
    const auto list = OutputList::Read(bytes.left(bytes.indexOf('\n') + 1));
    return list ? list->strPlace : QString();
}

QString COutputFolder::Target(const QString& strName) const {
    return m_strFolder + u'/' + strName;
}

void COutputFolder::Fail(const QString& strName, int nError) const {
    const QString strPath = strName.isEmpty() ? m_strFolder : Target(strName);
    throw Torvane::CRunException(CannotWriteText(strPath, nError));
}

void COutputFolder::ReadList(const QString& strOwner) {
    QByteArray bytes;
    if (Platform::ReadFileBytes(QFile::encodeName(Target(c_strList)), bytes, c_nMaxList) != 0)
        return;
    const auto list = OutputList::Read(bytes);
    if (!list)
        return;
    if (list->strOwner != strOwner)
        throw Torvane::CRunException(CompilerText::c_strOtherCourse.arg(m_strFolder));
    m_known = list->Files;
    m_nLines = bytes.count('\n');
    m_bListStands = bytes.endsWith('\n') && list->strPlace == m_strPlace;
}

/// Before it is known which of them are wanted: meanwhile the pages are planned, which leaves a processor
/// idle.
void COutputFolder::LookAtFiles(const std::function<bool()>& stop) {
    constexpr std::size_t c_nInPiece = 128;
    std::vector<std::pair<const QString*, OutputRecord*>> files;
    files.reserve(std::size_t(m_known.size()));
    for (auto it = m_known.begin(); it != m_known.end(); ++it)
        files.emplace_back(&it.key(), &*it);
    ForEachPiece(int((files.size() + c_nInPiece - 1) / c_nInPiece), [&](int nPiece) {
        const std::size_t nBegin = std::size_t(nPiece) * c_nInPiece;
        for (std::size_t i = nBegin; i < std::min(nBegin + c_nInPiece, files.size()) && !(stop && stop());
             ++i)
            files[i].second->bStands = StandsAsWritten(*files[i].first, *files[i].second);
    });
}

void COutputFolder::WriteList(bool bFinal) {
    QByteArray list = OutputList::Head(m_strOwner, m_strPlace);
    for (auto it = m_known.constBegin(); it != m_known.constEnd(); ++it) {
        if (!m_written.contains(it.key()) && (!bFinal || it->bKept))
            OutputList::Append(list, it.key(), *it);
    }
    for (auto it = m_written.constBegin(); it != m_written.constEnd(); ++it)
        OutputList::Append(list, it.key(), *it);
    for (const QString& strName : m_announced) {
        if (!bFinal && !m_written.contains(strName))
            OutputList::Append(list, strName, {});
    }
    const QByteArray temporary = TemporaryName();
    Platform::CFileState written;
    if (const int nError = m_folder.WriteFile(temporary, list, written))
        Fail(c_strList, nError);
    MoveIn(temporary, c_strList);
    m_nLines = list.count('\n');
    m_bListStands = true;
    m_unlisted.clear();
}

/// What changes in a large site is little, and later lines of the list count.
void COutputFolder::AddToList(const QByteArray& lines, bool bFinal) {
    const qsizetype nLines = m_nLines + lines.count('\n');
    const qsizetype nFiles = m_known.size() + m_announced.size();
    if (m_bListStands && nLines <= nFiles + nFiles / 4 + c_nSpareLines) {
        m_bListStands = m_folder.AppendToFile(QFile::encodeName(c_strList), lines) == 0;
        if (m_bListStands) {
            m_nLines = nLines;
            return;
        }
        // It may end within a line, which no other may follow.
    }
    WriteList(bFinal);
}

void COutputFolder::Announce(const QStringList& names) {
    // The list names the files before they exist: a compile that is killed halfway leaves nothing behind that
    // the next one would take for a person's own.
    const std::scoped_lock lock(m_mutex);
    QByteArray lines;
    for (const QString& strName : names) {
        if (m_known.contains(strName) || m_announced.contains(strName))
            continue;
        MakeRoom(strName);
        m_announced.insert(strName);
        OutputList::Append(lines, strName, {});
    }
    if (!lines.isEmpty() || !m_bListStands)
        AddToList(lines, false);
}

void COutputFolder::MakeRoom(const QString& strName) {
    const QStringList parts = strName.split(u'/');
    QString strPart;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        strPart += (i ? u"/"_s : QString()) + parts[i];
        const QByteArray part = QFile::encodeName(strPart);
        Platform::CFileState state;
        if (m_folder.GetState(part, state, false) != 0)
            return;
        // A folder behind a link is refused where it is to be written into.
        if (state.bLink)
            m_folder.GetState(part, state);
        if (i + 1 == parts.size() || !state.bFolder) {
            if (state.bFolder)
                Fail(strName, EISDIR);
            if (!m_known.contains(strPart) && !m_announced.contains(strPart))
                SetAside(strPart);
            else if (i + 1 < parts.size())
                m_folder.RemoveFile(part);
        }
    }
}

void COutputFolder::SetAside(const QString& strName) {
    QString strFree = strName + u".bak"_s;
    for (int n = 2; QFileInfo::exists(Target(strFree)); ++n)
        strFree = strName + u".bak"_s + QString::number(n);
    if (const int nError = m_folder.Rename(QFile::encodeName(strName), QFile::encodeName(strFree)))
        Fail(strName, nError);
    m_notes.append(CompilerText::c_strSetAside.arg(strName, strFree));
}

void COutputFolder::EnsureFolder(const QString& strFolder) {
    if (strFolder.isEmpty())
        return;
    {
        const std::scoped_lock lock(m_mutex);
        if (m_folders.contains(strFolder))
            return;
    }
    EnsureFolder(ParentOf(strFolder));
    const QByteArray name = QFile::encodeName(strFolder);
    const int nError = m_folder.MakeFolder(name);
    Platform::CFileState state;
    if (nError == EEXIST && m_folder.GetState(name, state, false) == 0 && state.bLink)
        throw Torvane::CRunException(CompilerText::c_strOutputIsLink.arg(strFolder));
    if (nError != 0 && !(nError == EEXIST && state.bFolder))
        Fail(strFolder, nError);
    const std::scoped_lock lock(m_mutex);
    m_folders.insert(strFolder);
}

QByteArray COutputFolder::TemporaryName() {
    return QFile::encodeName(c_strTemporaryFolder) + '/' + QByteArray::number(++m_nTemporary);
}

void COutputFolder::MoveIn(const QByteArray& temporary, const QString& strName) {
    if (const int nError = m_folder.Rename(temporary, QFile::encodeName(strName)))
        Fail(strName, nError);
}

const OutputRecord* COutputFolder::Known(const QString& strName) const {
    const auto found = m_known.constFind(strName);
    return found == m_known.constEnd() ? nullptr : &*found;
}

bool COutputFolder::StandsAsWritten(const QString& strName, const OutputRecord& record) const {
    Platform::CFileState state;
    return record.nSize >= 0 && m_folder.GetState(QFile::encodeName(strName), state, false) == 0 &&
           state.bPlainFile && qint64(state.nSize) == record.nSize && state.nModified == record.nModified;
}

void COutputFolder::Remember(const QString& strName, OutputRecord record) {
    const OutputRecord* pKnown = Known(strName);
    const std::scoped_lock lock(m_mutex);
    if (!pKnown || pKnown->nInput != record.nInput || pKnown->nSize != record.nSize ||
        pKnown->nModified != record.nModified)
        OutputList::Append(m_unlisted, strName, record);
    m_written.insert(strName, std::move(record));
}

bool COutputFolder::Keep(const QString& strName, quint64 nInput) {
    const OutputRecord* pKnown = Known(strName);
    if (!pKnown || nInput == 0 || pKnown->nInput != nInput || !pKnown->bStands)
        return false;
    for (const QString& strAlso : pKnown->Also) {
        const OutputRecord* pAlso = Known(strAlso);
        if (!pAlso || !pAlso->bStands)
            return false;
    }
    std::atomic_ref(pKnown->bKept).store(true, std::memory_order_relaxed);
    for (const QString& strAlso : pKnown->Also)
        std::atomic_ref(Known(strAlso)->bKept).store(true, std::memory_order_relaxed);
    return true;
}

bool COutputFolder::HoldsAlready(const QString& strName, const QByteArray& bytes,
                                 OutputRecord& record) const {
    Platform::CFileState state;
    if (m_folder.GetState(QFile::encodeName(strName), state, false) != 0 || !state.bPlainFile ||
        qint64(state.nSize) != bytes.size())
        return false;
    QByteArray present;
    if (Platform::ReadFileBytes(QFile::encodeName(Target(strName)), present, bytes.size() + 1) != 0 ||
        present != bytes)
        return false;
    record.nSize = bytes.size();
    record.nModified = state.nModified;
    return true;
}

void COutputFolder::Write(const QString& strName, const QByteArray& bytes, OutputRecord record) {
    if (!OutputList::IsSafeName(strName))
        Fail(strName, EINVAL);
    if (!HoldsAlready(strName, bytes, record)) {
        const QByteArray temporary = TemporaryName();
        Platform::CFileState written;
        if (const int nError = m_folder.WriteFile(temporary, bytes, written))
            Fail(strName, nError);
        EnsureFolder(ParentOf(strName));
        MoveIn(temporary, strName);
        record.nSize = bytes.size();
        record.nModified = written.nModified;
        ++m_nChanged;
    }
    Remember(strName, std::move(record));
}

void COutputFolder::Copy(const QString& strSourcePath, const QString& strName, quint64 nInput,
                         const std::function<bool()>& stop) {
    if (!OutputList::IsSafeName(strName))
        Fail(strName, EINVAL);
    const Platform::CFolder paths = Platform::CFolder::OfPaths();
    const QByteArray source = QFile::encodeName(strSourcePath);
    const auto failToRead = [&](int nError) {
        throw Torvane::CRunException(
            CompilerText::c_strCannotRead.arg(strSourcePath, Platform::SystemErrorText(nError)));
    };
    Platform::CFileState from;
    if (const int nError = paths.GetState(source, from))
        failToRead(nError);
    OutputRecord record;
    record.nInput = nInput;
    record.nSize = qint64(from.nSize);
    record.nModified = from.nModified;
    const OutputRecord* pKnown = Known(strName);
    // Another file may have the same size and time.
    const bool bSame = pKnown && pKnown->nInput == nInput;
    if (!StandsAsWritten(strName, record) ||
        (!bSame && !HaveSameBytes(strSourcePath, Target(strName), stop))) {
        QByteArray nothing;
        if (const int nError = Platform::ReadFileBytes(source, nothing, 1))
            failToRead(nError);
        const QByteArray temporary = TemporaryName();
        if (const int nError = Platform::CopyFileBytes(paths, source, m_folder, temporary, false, stop))
            Fail(strName, nError);
        EnsureFolder(ParentOf(strName));
        MoveIn(temporary, strName);
        ++m_nChanged;
    }
    Remember(strName, record);
}

QString COutputFolder::FreshPath() {
    return Target(QFile::decodeName(TemporaryName()));
}

void COutputFolder::Adopt(const QString& strFreshPath, const QString& strName, quint64 nInput) {
    const QByteArray temporary = QFile::encodeName(strFreshPath.mid(m_strFolder.size() + 1));
    Platform::CFileState state;
    if (const int nError = m_folder.GetState(temporary, state, false))
        Fail(strName, nError);
    EnsureFolder(ParentOf(strName));
    MoveIn(temporary, strName);
    OutputRecord record;
    record.nInput = nInput;
    record.nSize = qint64(state.nSize);
    record.nModified = state.nModified;
    ++m_nChanged;
    // Known at once: such a file takes long to make, and a run may be killed.
    const std::scoped_lock lock(m_mutex);
    QByteArray line;
    OutputList::Append(line, strName, record);
    m_written.insert(strName, std::move(record));
    AddToList(line, false);
}

bool COutputFolder::RemoveStale(const QString& strName) {
    const QString strParent = ParentOf(strName);
    // Not through a link: what lies behind it was never written here.
    if (Canonical(Target(strParent)) != (strParent.isEmpty() ? m_strFolder : Target(strParent)))
        return true;
    const QByteArray name = QFile::encodeName(strName);
    Platform::CFileState state;
    if (m_folder.GetState(name, state, false) == 0 && state.bPlainFile) {
        if (const int nError = m_folder.RemoveFile(name)) {
            m_notes.append(CompilerText::c_strNotRemoved.arg(strName, WhyNotWritten(nError)));
            return false;
        }
        ++m_nChanged;
    }
    for (QString strFolder = strParent; !strFolder.isEmpty(); strFolder = ParentOf(strFolder)) {
        // Only an empty folder goes.
        if (!QDir().rmdir(Target(strFolder)))
            break;
    }
    return true;
}

void COutputFolder::Finish() {
    QStringList stale;
    for (auto it = m_known.constBegin(); it != m_known.constEnd(); ++it) {
        if (m_written.contains(it.key()))
            continue;
        m_nFiles += it->bKept;
        if (!it->bKept)
            stale.append(it.key());
    }
    m_nFiles += m_written.size();
    for (const QString& strName : std::as_const(m_announced)) {
        if (!m_written.contains(strName))
            stale.append(strName);
    }
    for (const QString& strName : std::as_const(stale)) {
        // What stays is still ours, for the next run to remove.
        if (!RemoveStale(strName))
            m_known[strName].bKept = true;
    }
    if (!stale.isEmpty())
        WriteList(true);
    else if (!m_unlisted.isEmpty() || !m_bListStands)
        AddToList(m_unlisted, true);
    m_unlisted.clear();
}
