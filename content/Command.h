#pragma once

#include <QStringView>

/// When a command is enabled.
enum class ECommandRule {
    Always,
    CourseOpen,
    /// A node is selected; the root counts.
    Node,
    /// A node below the root is selected.
    BelowRoot,
    /// A node below the root, with an editor page or an external file.
    PageOrFile,
    /// A node with content.
    Content,
    /// A node with content that is no external link.
    ContentNoLink,
    /// A page is being edited, and the editor's design tab shows.
    Design,
    /// A page is being edited, and the design tab or the source tab shows.
    DesignOrSource,
};

/// What every table of commands says of each of them, whichever floor it belongs to.
struct CommandRow {
    int nId;
    /// As a menu shows it, with its mnemonic; for a button without text, what its tip says.
    QStringView strText;
    /// For the status bar.
    QStringView strStatus;
    ECommandRule Rule;
    /// Off while a page is being edited: the main frame's commands on the tree, and what would take the page
    /// away under the editor.
    bool bOffWhileEditing = false;
};
