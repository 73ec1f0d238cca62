#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <functional>

/// "SelfDefineTitle.ini" of a course: which node has which of eight fixed roles, and the title that the
/// teacher gave it. Everything here throws Torvane::CRunException when the file can't be written.
namespace CustomTitles {

inline constexpr int c_nRoles = 8;
/// The role that may be switched off, and whose title is short.
inline constexpr int c_nIntroduction = 4;
inline constexpr int c_nIntroductionBytes = 6;
inline constexpr qint32 c_nSwitchedOff = -1;

struct Role {
    /// As the file names it.
    QString strKey;
    /// As the dialog names it, and the group in which it stands there.
    QString strLabel;
    QString strGroup;
};

/// The roles in the order in which the dialog shows and applies them.
const std::array<Role, c_nRoles>& Roles();

/// The titles in the order of the roles; empty where there is none.
QStringList ReadTitles(const QString& strPath);

/// The node that has the role; 0 for none, or c_nSwitchedOff.
qint32 ReadNodeId(const QString& strPath, int nRole);

/// Renames the node in the tree, with the tree's own rules and messages. False when the tree has no such
/// node.
using Rename = std::function<bool(qint32 nNodeId, const QString& strTitle)>;

/// Applies the titles in order. An empty one is passed over, and so is a role without a node in the tree. A
/// title is stored whether or not the tree took it.
void Apply(const QString& strPath, const QStringList& titles, const Rename& rename);

} // namespace CustomTitles
