#pragma once

#include <QString>

class CBookNode;

/// A folder beside a node's own, in which new content is built: whatever goes wrong there costs nothing of
/// the old. Goes with the object, together with what it holds then.
class CContentStage {
public:
    /// Throws Torvane::CRunException when the node's folder or this one can't be made.
    explicit CContentStage(const CBookNode& node);
    ~CContentStage();
    CContentStage(const CContentStage&) = delete;
    CContentStage& operator=(const CContentStage&) = delete;

    /// With a trailing backslash.
    QString GetFolder() const { return m_strFolder; }
    /// The node's folder and this one change places, or stay as they are: throws
    /// Torvane::File::CFileException.
    void Exchange();
    /// Removes the folder before the object goes; another thread may call it. What can't be removed stays
    /// behind as litter, to which no row leads.
    void Remove() const;

private:
    QString m_strNodeFolder;
    QString m_strFolder;
};
