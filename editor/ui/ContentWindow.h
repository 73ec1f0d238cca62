#pragma once

#include "editor/DisplayRules.h"

#include <QStringList>
#include <QWidget>

class CWebBrowser2Ex;

/// A window of its own for a node's content. It goes when the person closes it, and at the latest with the
/// window it was opened from.
class CContentWindow : public QWidget {
    Q_OBJECT
public:
    /// Opens a window of this title in the given form and loads the target into it: a path in backslash form
    /// or a URL.
    static void Open(const QString& strTitle, const QString& strTarget, const QStringList& allowedFolders,
                     bool bNetwork, DisplayRules::EWindowForm form, QWidget* pOpener);

protected:
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    explicit CContentWindow(QWidget* pOpener);
    CWebBrowser2Ex* m_pBrowser;
};
