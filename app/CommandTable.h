#pragma once

#include "content/Command.h"

#include <QList>
#include <QString>

#include <span>

/// Every command of the program in one table, joined from the application's own rows, the tree's and the
/// editor's, and every place where each of them stands. The menus, the toolbar, the shortcuts and the
/// enabling of the main frame are made from it.
namespace Commands {

inline constexpr int c_nNewCourse = 32777;
inline constexpr int c_nOpenCourse = 32778;
inline constexpr int c_nCompile = 32855;
inline constexpr int c_nCompileHtml = 32928;
inline constexpr int c_nCompileClassroom = 32929;
inline constexpr int c_nExportWord = 32941;
inline constexpr int c_nSetTemplate = 32921;
inline constexpr int c_nDownloadTemplate = 32935;
inline constexpr int c_nOverallPreview = 32873;
inline constexpr int c_nChangePassword = 32852;
inline constexpr int c_nOptions = 32853;
inline constexpr int c_nServerAddress = 32854;
inline constexpr int c_nFirstRecent = 32858;
inline constexpr int c_nLastRecent = 32861;
inline constexpr int c_nRecentPlaceholder = 32938;
inline constexpr int c_nToolBar = 59392;
inline constexpr int c_nStatusBar = 59393;
inline constexpr int c_nAbout = 57664;
inline constexpr int c_nExit = 57665;
inline constexpr int c_nNextPane = 57680;
inline constexpr int c_nPreviousPane = 57681;

enum class EOwner { Application, Tree, Editor };

struct Command : CommandRow {
    EOwner Owner = EOwner::Application;
    /// The words on its button, if there are any.
    QStringView strButton;
    /// In the notation of key sequences; empty when it has none.
    QStringView strShortcut;
};

/// The rows of all floors, each id once.
std::span<const Command> All();
/// Null when there is no such command.
const Command* Find(int nId);

/// Ids in order, 0 for a separator, c_nRecentPlaceholder for the sub-menu of recent courses.
struct Menu {
    QStringView strTitle;
    QList<int> Items;
};
const QList<Menu>& MainMenu();

/// The toolbar's buttons in order; 0 for a separator.
std::span<const int> ToolBar();

/// A menu that belongs to a button. It opens from the button's arrow, where the button has one, else by a
/// right click.
struct DropDown {
    int nButton;
    int nMenu;
    bool bArrow;
    QList<int> Items;
};
const QList<DropDown>& DropDowns();
/// Null for a button that has none.
const DropDown* DropDownOf(int nButton);
/// Its entries as they are shown: without the recording of a lecture where there is no video.
QList<int> ItemsOf(const DropDown& dropDown, bool bVideo);

struct Accelerator {
    QStringView strKeys;
    int nId;
};
std::span<const Accelerator> Accelerators();

/// A place where commands stand: a menu of the menu bar, a bar of buttons, a context menu, a drop-down menu.
struct Place {
    QString strName;
    QList<int> Items;
};
QList<Place> Places();

/// What decides whether a command is enabled.
struct State {
    bool bCourseOpen = false;
    /// The tree's and the showing view's own answers for this command.
    bool bTreeSaysYes = false;
    bool bViewSaysYes = false;
};
bool IsEnabled(const Command& command, const State& state);

} // namespace Commands
