#include "content/ContentStage.h"

#include "content/BookNode.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "platform/base/FileCalls.h"
#include "platform/base/NativePath.h"
#include "platform/base/PathSwap.h"
#include "video/Recording.h"

#include <QMap>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace Torvane::File;

namespace {

/// Where an exchange in more than one step lays the node's folder meanwhile.
const QString c_strAside = u".old"_s;
const QRegularExpression c_besideNode(u"^N(\\d{1,9})(\\[\\d+\\])?(\\.old)*$"_s);

/// Where all stages stand, on the volume of the nodes' folders. A folder of their own, so that nobody has to
/// look for what a crash left among a hundred thousand nodes.
QString StagesOf(const CCourse& course) {
    return course.GetPaths().GetNodeResourceFolder(true) + u"~\\"_s;
}

/// Once nothing stands in it. By the system's own call, which refuses a folder that holds anything: a stage
/// may hold the only copy of somebody's content.
void RemoveStagesFolder(const QString& strStages) {
    Platform::RemoveFolder(Platform::ToNativeExact(WithoutBackslash(strStages)).toUtf8());
}

/// What stands in the folder of the node with that stored path, below it; empty where the content is no file
/// of the node's own.
QString BelowNode(const QString& strNode, const QString& strStored) {
    return strStored.startsWith(strNode + u'\\', Qt::CaseInsensitive) ? strStored.mid(strNode.size() + 1)
                                                                      : QString();
}

/// In a folder of its own in the stage, as the recorder gets one; empty for none.
QString LectureIn(const QString& strStage) {
    QList<FolderEntry> entries;
    ListFolder(strStage, entries);
    for (const FolderEntry& entry : entries) {
        const QString strFolder = strStage + u'\\' + entry.strName;
        if (entry.bFolder && HoldsRecording(strFolder))
            return strFolder;
    }
    return {};
}

bool HoldsLecture(const QString& strStage) {
    return !LectureIn(strStage).isEmpty();
}

/// The folders beside the node's own are given without a trailing backslash.
void MendBeside(const CBookNode& node, const QStringList& beside, IWalkFilter* pFilter) {
    // First of all: throws for a node that is gone.
    const QString strStored = node.GetStoredPath();
    node.EnsureFolder();
    const QString strFolder = WithoutBackslash(node.GetFolder());
    const QString strBelow = BelowNode(BareName(strFolder), strStored);
    const auto holdsContent = [&](const QString& strPlace) {
        return strBelow.isEmpty() ? !IsFolderEmpty(strPlace)
                                  : GetPathKind(strPlace + u'\\' + strBelow) != EPathKind::Nothing;
    };
    for (const QString& strPlace : beside) {
        // Without a file to go by, only what certainly was the node's own counts, and no half-built content.
        if ((!strBelow.isEmpty() || strPlace.endsWith(c_strAside)) && !holdsContent(strFolder) &&
            holdsContent(strPlace))
            ExchangeFolders(strPlace, strFolder);
    }
    // Then nobody knows what they are good for.
    if (!strBelow.isEmpty() && !holdsContent(strFolder))
        return;
    for (const QString& strPlace : beside) {
        if (HoldsLecture(strPlace))
            continue;
        try {
            DeleteFolder(strPlace, true, pFilter);
        } catch (const CFileException&) {
            // Litter, to which no row leads.
        }
    }
}

} // namespace

CContentStage::CContentStage(const CBookNode& node) : m_strNodeFolder(node.GetFolder()) {
    node.EnsureFolder();
    const QString strPlace = StagesOf(node.GetCourse());
    const QString strName = BareName(WithoutBackslash(m_strNodeFolder));
    QStringList beside{strPlace + strName + c_strAside, strPlace + strName};
    beside.removeIf([](const QString& strFolder) { return !IsFolder(strFolder); });
    if (!beside.isEmpty())
        MendBeside(node, beside, nullptr);
    m_strFolder = strPlace + MakeUniqueName(strName, strPlace) + u'\\';
    CreateFolderPath(WithoutBackslash(m_strFolder));
}

CContentStage::~CContentStage() {
    Remove();
}

void CContentStage::Exchange() {
    ExchangeFolders(m_strFolder, m_strNodeFolder);
    m_bHoldsOld = !m_bHoldsOld;
}

bool CContentStage::KeepsRecording() const {
    return !m_bHoldsOld && !m_bTaken && HoldsLecture(WithoutBackslash(m_strFolder));
}

void CContentStage::Remove() const {
    if (m_bHoldsOld || KeepsRecording())
        return;
    TryDeleteFolder(WithoutBackslash(m_strFolder));
    RemoveStagesFolder(ParentFolder(WithoutBackslash(m_strFolder)));
}

QString FindKeptLecture(const CBookNode& node) {
    const QString strPlace = StagesOf(node.GetCourse());
    QList<FolderEntry> entries;
    ListFolder(WithoutBackslash(strPlace), entries);
    for (const FolderEntry& entry : entries) {
        const QRegularExpressionMatch match = c_besideNode.match(entry.strName);
        if (!entry.bFolder || match.captured(1).toInt() != node.GetId())
            continue;
        if (const QString strLecture = LectureIn(strPlace + entry.strName); !strLecture.isEmpty())
            return strLecture;
    }
    return {};
}

bool TakeKeptLecture(const QString& strKept, const QString& strStage) {
    const QByteArray from = Platform::ToNativeExact(strKept).toUtf8();
    const QByteArray to = Platform::ToNativeExact(strStage + BareName(strKept)).toUtf8();
    if (Platform::MovePath(from, to) != 0)
        return false;
    Platform::RemoveFolder(Platform::ToNativeExact(ParentFolder(strKept)).toUtf8());
    return true;
}

void DeleteKeptLecture(const QString& strKept) {
    const QString strStage = WithoutBackslash(ParentFolder(strKept));
    TryDeleteFolder(strStage);
    RemoveStagesFolder(ParentFolder(strStage));
}

void MendNodeFolders(CCourse& course, IWalkFilter* pFilter) {
    const QString strPlace = StagesOf(course);
    Platform::CFolder folder;
    std::vector<Platform::CFolderEntry> entries;
    // By its exact name: looking for it in other letter cases would read all nodes' folders.
    if (folder.Open(Platform::ToNativeExact(strPlace).toUtf8()) != 0 || folder.List(entries) != 0)
        return;
    QMap<qint32, QStringList> besideNodes;
    for (const Platform::CFolderEntry& entry : entries) {
        if (entry.eType != Platform::EEntryType::Folder)
            continue;
        const QString strName = QString::fromUtf8(entry.name);
        const QRegularExpressionMatch match = c_besideNode.match(strName);
        if (!match.hasMatch())
            continue;
        QStringList& beside = besideNodes[match.captured(1).toInt()];
        beside.insert(strName.endsWith(c_strAside) ? 0 : beside.size(), strPlace + strName);
    }
    for (auto it = besideNodes.cbegin(); it != besideNodes.cend(); ++it) {
        try {
            MendBeside(CBookNode(course, {it.key(), {}, NodeType::c_nEmpty}), it.value(), pFilter);
        } catch (const Torvane::CRunException&) {
            // The next content of the node tries again, and says why.
        }
    }
    RemoveStagesFolder(strPlace);
}
