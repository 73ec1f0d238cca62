#pragma once

#include "editor/DisplayRules.h"

#include <QStringList>
#include <QWidget>

class CContentPane;

/// A window of its own for a node's content. It goes when the person closes it, and at the latest with the
/// course and with the window it was opened from.
class CContentWindow : public QWidget {
    Q_OBJECT
public:
    struct Names {
        QString strTitle;
        /// What the person calls the file; empty for its own name.
        QString strFile;
    };
    /// Opens a window in the given form and loads the target into it: a path in backslash form or a URL.
    static void Open(const Names& names, const QString& strTarget, const QStringList& allowedFolders,
                     bool bNetwork, DisplayRules::EWindowForm form, QWidget* pOpener);
    /// The same for what a page wants to open: a local URL, in a normal window and without the network. A
    /// page gets a second window only for a second page; a film takes the place of the last one.
    static void OpenForPage(const QString& strTitle, const QString& strUrl, const QStringList& allowedFolders,
                            QWidget* pOpener);
    /// Closes every window that was opened from this one.
    static void CloseAll(QWidget* pOpener);

private:
    explicit CContentWindow(QWidget* pOpener);
    void Load(const QString& strTarget, const QStringList& allowedFolders, bool bNetwork);

    CContentPane* m_pPane;
    bool m_bMediaOfPage = false;
};
