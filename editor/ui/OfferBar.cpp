#include "editor/ui/OfferBar.h"

#include "content/Texts.h"
#include "editor/Texts.h"
#include "platform/base/NativePath.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/WebBrowser.h"

#include <QDesktopServices>
#include <QStyle>
#include <QUrl>
#include <QUrlQuery>

namespace {

/// Nobody reads faster. For that long a page can't change what is offered, and a click that was meant for
/// what stood there before opens nothing.
constexpr qint64 c_nSettleMs = 500;
const QLatin1StringView c_strMail("mailto");
const QLatin1StringView c_strWeb("http");
const QLatin1StringView c_strSecureWeb("https");

/// Mail programs attach files that an address names.
QUrl WithoutAttachments(const QUrl& mail) {
    const QUrlQuery asked(mail);
    QUrlQuery kept;
    for (const auto& [strName, strValue] : asked.queryItems(QUrl::FullyEncoded)) {
        const QString strLower = strName.toLower();
        if (strLower == QLatin1StringView("subject") || strLower == QLatin1StringView("body"))
            kept.addQueryItem(strName, strValue);
    }
    QUrl url = mail;
    url.setQuery(kept);
    return url;
}

/// Without the place in it.
QString PageOf(CWebBrowser2Ex& surface) {
    QString strUrl;
    surface.GetURL(strUrl);
    return strUrl.section(u'#', 0, 0);
}

} // namespace

COfferBar::COfferBar(QWidget* pParent) : QPushButton(pParent) {
    setObjectName(QStringLiteral("openOutside"));
    // However long an address of a page is, the window stays as wide as it is.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    hide();
    connect(this, &QPushButton::clicked, this, &COfferBar::Take);
}

void COfferBar::Serve(CWebBrowser2Ex& surface) {
    m_pSurface = &surface;
    connect(&surface, &CWebBrowser2Ex::NavigateComplete2, this, [this] {
        if (!isHidden() && !m_bStays && PageOf(*m_pSurface) != m_strPage)
            hide();
    });
    connect(&surface, &CWebBrowser2Ex::NewWindowRequested, this,
            [this](const QString& strUrl, bool bByPerson) {
                if (bByPerson && QUrl(strUrl).isLocalFile())
                    Q_EMIT FileWanted(strUrl);
                else
                    Offer(strUrl);
            });
    connect(&surface, &CWebBrowser2Ex::LinkMissing, this, [this](const QString& strPath) {
        Show(ContentText::c_strLinkMissing, Platform::ToShown(strPath), {});
    });
}

void COfferBar::Offer(const QString& strUrl) {
    const QUrl url(strUrl);
    const QString strPath = SurfaceUrls::UrlToPath(url);
    if (!strPath.isEmpty())
        Show(EditorTexts::c_strOpenOfPage, Platform::ToShown(strPath), strUrl);
    else if (url.scheme() == c_strMail)
        Show(EditorTexts::c_strWriteMail, url.path(), strUrl);
    else if (url.scheme() == c_strWeb || url.scheme() == c_strSecureWeb)
        Show(EditorTexts::c_strOpenOutside, url.toDisplayString(), strUrl);
    else
        Show(EditorTexts::c_strOpenAddress, url.toDisplayString(), strUrl);
}

void COfferBar::OfferToStay(const QString& strUrl) {
    hide();
    Offer(strUrl);
    m_bStays = true;
}

void COfferBar::Show(const QString& strText, const QString& strOf, const QString& strUrl) {
    const bool bSettling = m_changed.isValid() && m_changed.elapsed() < c_nSettleMs;
    if (!isHidden() && (isDown() || bSettling || (m_strOf == strOf && m_strUrl == strUrl)))
        return;
    m_changed.start();
    m_bStays = false;
    m_strUrl = strUrl;
    m_strPage = PageOf(*m_pSurface);
    m_strText = strText;
    m_strOf = strOf;
    Elide();
    setToolTip(DialogParts::TipOf(strOf));
    show();
}

void COfferBar::Elide() {
    const int nEdge = style()->pixelMetric(QStyle::PM_ButtonMargin, nullptr, this) +
                      2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    const int nLeft = width() - 2 * nEdge - fontMetrics().horizontalAdvance(m_strText.arg(QString()));
    const QString strShown = fontMetrics().elidedText(m_strOf, Qt::ElideMiddle, qMax(nLeft, 0));
    setText(m_strText.arg(QString(strShown).replace(u'&', QStringLiteral("&&"))));
}

void COfferBar::resizeEvent(QResizeEvent* pEvent) {
    QPushButton::resizeEvent(pEvent);
    if (!m_strText.isEmpty())
        Elide();
}

void COfferBar::Take() {
    if (m_changed.elapsed() < c_nSettleMs)
        return;
    m_changed.start();
    setVisible(m_bStays);
    const QUrl url(m_strUrl);
    if (url.isLocalFile())
        Q_EMIT FileWanted(m_strUrl);
    else if (!m_strUrl.isEmpty() &&
             !QDesktopServices::openUrl(url.scheme() == c_strMail ? WithoutAttachments(url) : url))
        Q_EMIT NotOpened(url.toDisplayString());
}
