#pragma once

#include "foundation/FolderWalk.h"

#include <QString>

class CBookNode;
class CCourse;

/// A folder beside a node's own, in which new content is built: whatever goes wrong there costs nothing of
/// the old. Goes with the object, together with what it holds then; but the old content never does while the
/// node's row still leads to it.
class CContentStage {
public:
    /// Throws Torvane::CRunException when the node's folder or this one can't be made.
    explicit CContentStage(const CBookNode& node);
    ~CContentStage();
    CContentStage(const CContentStage&) = delete;
    CContentStage& operator=(const CContentStage&) = delete;

    /// With a trailing backslash.
    QString GetFolder() const { return m_strFolder; }
    /// The node's folder and this one change places: throws Torvane::File::CFileException. The second time
    /// undoes the first. What stands here in between is kept until it is let go.
    void Exchange();
    /// The row leads to the new content, for good: the old may go.
    void LetOldGo() {
        m_bHoldsOld = false;
        m_bTaken = true;
    }
    /// What stands here was recorded and belongs to no node yet. Nobody can give that lecture once more, so
    /// it stays when the object goes.
    bool KeepsRecording() const;
    /// Removes the folder before the object goes; another thread may call it. What can't be removed stays
    /// behind as litter, to which no row leads.
    void Remove() const;

private:
    QString m_strNodeFolder;
    QString m_strFolder;
    bool m_bHoldsOld = false;
    bool m_bTaken = false;
};

/// The folder of a lecture that was recorded for the node and has come into no content, without a trailing
/// backslash; empty for none.
QString FindKeptLecture(const CBookNode& node);
/// Moves such a folder into the stage that is being filled (with a trailing backslash), under its own name.
/// False when that is not possible; it stays then.
bool TakeKeptLecture(const QString& strKept, const QString& strStage);

/// Deletes it, with the stage around it; what can't be deleted stays without a word.
void DeleteKeptLecture(const QString& strKept);

/// Puts back in order what a crash in the middle of an exchange has left: of the folders that stand for a
/// node, the one that holds what the row says becomes the node's own, and the others go. For all nodes of a
/// course. Nothing is thrown; what can't be put in order stays as it is.
void MendNodeFolders(CCourse& course, Torvane::File::IWalkFilter* pFilter);
