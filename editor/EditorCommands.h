#pragma once

#include <QStringView>

#include <span>

/// The commands of the editor's three toolbars in one table: ids, what a person reads, pictures, and how each
/// is carried out.
namespace EditorCommands {

namespace Id {
inline constexpr int c_nForeColor = 32782;
inline constexpr int c_nBackColor = 32784;
inline constexpr int c_nFontBox = 32785;
inline constexpr int c_nSizeBox = 32786;
inline constexpr int c_nImage = 32790;
inline constexpr int c_nFlash = 32791;
inline constexpr int c_nMedia = 32792;
inline constexpr int c_nSave = 32825;
inline constexpr int c_nQuit = 32826;
inline constexpr int c_nOtherFile = 32836;
inline constexpr int c_nTable = 32837;
inline constexpr int c_nEditTable = 32838;
inline constexpr int c_nMarquee = 32844;
inline constexpr int c_nLineBreak = 32846;
inline constexpr int c_nLink = 32848;
inline constexpr int c_nUnlink = 32849;
inline constexpr int c_nFloatingHelp = 32850;
inline constexpr int c_nHelpMark = 32851;
inline constexpr int c_nSetTemplate = 32871;
inline constexpr int c_nClearContent = 32908;
inline constexpr int c_nInSiteLink = 32920;
inline constexpr int c_nClearGarbage = 32940;
} // namespace Id

enum class EFamily {
    /// One named command of the surface, nothing more.
    Plain,
    /// The same; its button stays pressed while the command is in force at the caret.
    Toggle,
    /// A colour dialog, then the named command with the colour.
    Colour,
    /// The named command with a dialog of the surface's own, then the selection is taken away.
    Link,
    /// A combo box; the named command with the chosen value.
    Box,
    /// Inserts a fragment of HTML or does work of its own.
    Own,
    /// Works on the page as a whole: allowed in the source as well.
    Page,
};

/// What a command needs at the caret to have any effect.
enum class ENeed { Nothing, StepBehind, StepAhead, Selection, Link };

struct Command {
    int nId;
    EFamily Family;
    QStringView strTooltip;
    /// Below "Images\HtmlEditorToolBarImgs\"; empty for a command on no toolbar.
    QStringView strBitmap;
    /// The surface's name of the command; empty for Own and Page.
    QStringView strName;
    /// Shown beside the picture; empty for most.
    QStringView strLabel = {};
    /// For the status bar; the tooltip where empty.
    QStringView strHint = {};
    ENeed Need = ENeed::Nothing;
};

std::span<const Command> All();
/// Null when the editor has no such command.
const Command* Find(int nId);

/// The ids of a toolbar from left to right, 0 for a separator.
std::span<const int> FormatBar();
std::span<const int> InsertBar();
std::span<const int> EditBar();
/// The menu at the mouse in the page, in the same form.
std::span<const int> PageMenu();

/// One row of a combo box.
struct BoxRow {
    QStringView strShown;
    QStringView strValue;
};
std::span<const BoxRow> Fonts();
std::span<const BoxRow> Sizes();
inline constexpr int c_nFirstFont = 0;
inline constexpr int c_nFirstSize = 2;

/// The tab that shows.
enum class EMode { Design = 0, Source = 1, Preview = 2 };

/// Whether a mode allows the command; false for an id that is none of the editor's.
bool IsAllowed(int nId, EMode mode);

/// What a page that is edited has for the commands.
struct SAtCaret {
    bool bStepBehind = false;
    bool bStepAhead = false;
    bool bSelection = false;
    bool bLink = false;

    bool operator==(const SAtCaret&) const = default;
};

/// Whether the command is offered: one that would do nothing isn't, though its key may run it.
bool IsOffered(int nId, EMode mode, const SAtCaret& atCaret);

} // namespace EditorCommands
