#pragma once

#include <QList>
#include <QString>

#include <span>

/// The commands of the main frame: one table with id, text, tip, shortcut and enabling rule, from which the
/// menus and the toolbar are built.
namespace Commands {

enum class EEnabled {
    Always,
    CourseOpen,
    /// The editor isn't showing, and the tree's own rule for its selection holds.
    Tree,
    /// The view that shows decides.
    View,
    /// Known by its id, text and place, but not carried out by this version.
    NotYet,
};

struct Command {
    int nId;
    const char16_t* pText;
    /// Text under its button in the toolbar; empty when it has none.
    const char16_t* pToolText;
    const char16_t* pStatusText;
    /// In the notation of key sequences; empty when it has none.
    const char16_t* pShortcut;
    EEnabled Enabled;
};

inline constexpr int c_nNewCourse = 32777;
inline constexpr int c_nOpenCourse = 32778;
inline constexpr int c_nCompile = 32855;
inline constexpr int c_nSetTemplate = 32921;
inline constexpr int c_nOverallPreview = 32873;
inline constexpr int c_nChangePassword = 32852;
inline constexpr int c_nOptions = 32853;
inline constexpr int c_nServerAddress = 32854;
inline constexpr int c_nFirstRecent = 32858;
inline constexpr int c_nLastRecent = 32861;
inline constexpr int c_nRecentPlaceholder = 32938;
inline constexpr int c_nSave = 32825;
inline constexpr int c_nEditContent = 32815;
inline constexpr int c_nRename = 32775;
inline constexpr int c_nToolBar = 59392;
inline constexpr int c_nStatusBar = 59393;
inline constexpr int c_nAbout = 57664;
inline constexpr int c_nExit = 57665;

/// Null when there is no such command.
const Command* Find(int nId);

struct Menu {
    const char16_t* pTitle;
    /// Command ids in order; 0 for a separator, c_nRecentPlaceholder for the sub-menu of recent courses.
    QList<int> Items;
};

const QList<Menu>& MainMenu();

/// The toolbar's buttons in order; 0 for a separator.
std::span<const int> ToolBar();

/// What decides whether a command is enabled.
struct State {
    bool bCourseOpen = false;
    bool bEditorShowing = false;
    /// The tree's and the showing view's own answers for this command.
    bool bTreeSaysYes = false;
    bool bViewSaysYes = false;
};
bool IsEnabled(const Command& command, const State& state);

} // namespace Commands
