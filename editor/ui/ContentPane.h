#pragma once

#include <QStringList>
#include <QWidget>

class CMediaView;
class COfferBar;
class CWebBrowser2Ex;
class QStackedWidget;

/// Shows content for looking at: what the browser engine shows in the browser surface, and every other file
/// in the player or as what it is. A file of the course's own to which a click leads opens at once; what
/// else a page wants is offered.
class CContentPane : public QWidget {
    Q_OBJECT
public:
    explicit CContentPane(QWidget* pParent);

    /// The title of the windows that pages open, and what the person calls the file that shows next; empty
    /// for its own name.
    void SetNames(const QString& strTitle, const QString& strFileName) {
        m_strTitle = strTitle;
        m_strFileName = strFileName;
    }
    /// Loads the target, a path in backslash form or a URL, and returns when that has ended. The folders are
    /// what a page may read. The pane may be gone when this returns.
    void Show(const QString& strTarget, const QStringList& allowedFolders, bool bNetwork);
    /// What shows and sounds ends: at once, or when no surface waits for its engine any more.
    void Clear();

private:
    void ShowAsFile(const QString& strPath);
    void ClearPage();
    void OpenForPage(const QString& strUrl);
    void OpenInProgram(const QString& strPath);
    void SaveCopy(QString strPath, QString strName);
    void SayNotOpened(const QString& strWhat);

    QString m_strTitle;
    QString m_strFileName;
    /// What was last asked for, and its path where it is a file.
    QString m_strTarget;
    QString m_strShownPath;
    QStringList m_allowedFolders;
    QStackedWidget* m_pStack;
    CWebBrowser2Ex* m_pBrowser;
    CMediaView* m_pMedia = nullptr;
    COfferBar* m_pOffer;
    bool m_bCleared = true;
};
