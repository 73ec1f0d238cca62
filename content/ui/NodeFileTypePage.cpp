#include "content/ui/NodeFileTypePage.h"

#include "content/ContentKinds.h"
#include "content/Texts.h"
#include "platform/ui/DialogParts.h"

#include <QButtonGroup>
#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QProxyStyle>
#include <QRadioButton>
#include <QStyleFactory>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWizard>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nTipDelayMilliseconds = 10;
constexpr int c_nTipMilliseconds = 20000;
constexpr int c_nTipCharacters = 30;
constexpr int c_nArrivalMilliseconds = 100;
/// From the top left corner of what a tip belongs to.
constexpr QPoint c_pointerPlace(10, 10);

/// The tips of this page come at once.
class CQuickTips : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;
    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override {
        return hint == SH_ToolTip_WakeUpDelay ? c_nTipDelayMilliseconds
                                              : QProxyStyle::styleHint(hint, pOption, pWidget, pReturn);
    }
};

/// In lines of a length that leaves the kinds below in sight, and with a title as it was typed.
QString AsTip(const QString& strText) {
    if (strText.isEmpty())
        return {};
    const QFontMetrics metrics(QToolTip::font());
    const int nWidth = qMin(metrics.horizontalAdvance(strText + u' '),
                            metrics.horizontalAdvance(QString(c_nTipCharacters, u'栏')));
    return u"<table width='%1'><tr><td>%2</td></tr></table>"_s.arg(nWidth).arg(strText.toHtmlEscaped());
}

} // namespace

CSelectCreateTypePropertyPage::CSelectCreateTypePropertyPage(Torvane::Dialog::MFC::IPeople& people,
                                                             const ContentPreset& preset,
                                                             CNodeFileParams& params)
    : CWizardPage(ContentText::c_strTypePage), m_people(people), m_params(params),
      m_pKinds(new QButtonGroup(this)), m_bAdvice(!preset.strAdvice.isEmpty()) {
    AddKinds(preset);
    QAbstractButton* pPreset = m_pKinds->button(static_cast<int>(preset.Kind));
    if (pPreset == nullptr)
        pPreset = m_pKinds->button(static_cast<int>(EContentKind::EditorPage));
    pPreset->setChecked(true);
}

void CSelectCreateTypePropertyPage::AddKinds(const ContentPreset& preset) {
    auto* pLayout = new QVBoxLayout(this);
    auto* pStyle = new CQuickTips(QStyleFactory::create(style()->name()));
    pStyle->setParent(this);
    for (const ContentKinds::Row& row : ContentKinds::Rows()) {
        const int nKind = static_cast<int>(row.Kind);
        const QString strTip =
            m_bAdvice && row.Kind == preset.Kind ? ContentKinds::PresetTip(preset) : row.strTip;
        auto* pKind = new QRadioButton(row.strCaption, this);
        DialogParts::SetNames(pKind, qPrintable(u"kind%1"_s.arg(nKind)), row.strCaption);
        pKind->setAccessibleDescription(strTip);
        pKind->setToolTip(AsTip(strTip));
        pKind->setToolTipDuration(c_nTipMilliseconds);
        pKind->setStyle(pStyle);
        pKind->installEventFilter(this);
        m_pKinds->addButton(pKind, nKind);
        pLayout->addWidget(pKind);
    }
    pLayout->addStretch();
}

void CSelectCreateTypePropertyPage::ShowAdvice() {
    QWidget* pKind = m_pKinds->checkedButton();
    if (!m_bAdvice || !isVisible() || pKind == nullptr)
        return;
    const QPoint place = pKind->mapToGlobal(c_pointerPlace);
    // Not out of the hand of somebody who presses a button; and there are desktops where nobody may move it.
    if (QGuiApplication::mouseButtons() == Qt::NoButton &&
        !QGuiApplication::platformName().startsWith(u"wayland"_s))
        QCursor::setPos(pKind->screen(), place);
    // The pointer brings the tip along, unless it could not go there. A tip that stood there before it would
    // go away with what the pointer leaves.
    QTimer::singleShot(c_nArrivalMilliseconds, pKind, [pKind, place] {
        if (pKind->window()->focusWidget() == pKind && !QToolTip::isVisible())
            QToolTip::showText(place, pKind->toolTip(), pKind, {}, c_nTipMilliseconds);
    });
}

QWidget* CSelectCreateTypePropertyPage::GetFirstField() const {
    return m_pKinds->checkedButton();
}

bool CSelectCreateTypePropertyPage::eventFilter(QObject* pObject, QEvent* pEvent) {
    // When the click is over: the page goes away under it.
    if (pEvent->type() == QEvent::MouseButtonDblClick &&
        static_cast<QMouseEvent*>(pEvent)->button() == Qt::LeftButton)
        QTimer::singleShot(0, wizard(), &QWizard::next);
    return CWizardPage::eventFilter(pObject, pEvent);
}

bool CSelectCreateTypePropertyPage::validatePage() {
    if (m_pKinds->checkedId() < 0) {
        m_people.Notice(ContentText::c_strNoKind);
        return false;
    }
    m_params.Kind = static_cast<EContentKind>(m_pKinds->checkedId());
    return true;
}
