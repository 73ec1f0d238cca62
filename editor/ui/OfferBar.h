#pragma once

#include <QElapsedTimer>
#include <QPushButton>

class CWebBrowser2Ex;

/// The bar above a page that is looked at. Nobody has vouched for a page, so an
/// address of the web, a mail address, and a file that the page would open by itself are only offered here,
/// and the teacher decides. It also says that a link leads nowhere. Hidden while there is nothing to say.
class COfferBar : public QPushButton {
    Q_OBJECT
public:
    explicit COfferBar(QWidget* pParent);

    /// Takes what the surface's pages wish for.
    void Serve(CWebBrowser2Ex& surface);
    /// Offers an address of the program's own choice, whatever the surface's page does; to be called once the
    /// surface is served.
    void OfferToStay(const QString& strUrl);

protected:
    void resizeEvent(QResizeEvent* pEvent) override;

Q_SIGNALS:
    /// A file of the course is to open, a local URL: the person has clicked in the page or here.
    void FileWanted(const QString& strUrl);
    /// The desktop has no program for what was chosen, as a person reads it.
    void NotOpened(const QString& strWhat);

private:
    void Offer(const QString& strUrl);
    void Show(const QString& strText, const QString& strOf, const QString& strUrl);
    void Take();
    void Elide();

    CWebBrowser2Ex* m_pSurface = nullptr;
    /// The page of which the bar speaks.
    QString m_strPage;
    QString m_strText;
    QString m_strOf;
    /// What a click opens; nothing for a message.
    QString m_strUrl;
    QElapsedTimer m_changed;
    bool m_bStays = false;
};
