#include "content/ui/PagedWizard.h"

#include "content/Texts.h"
#include "content/ui/WizardPage.h"
#include "platform/ui/DialogParts.h"

#include <QAbstractButton>
#include <QEvent>
#include <QTimer>

namespace {

constexpr int c_nActivationMilliseconds = 1000;

} // namespace

CPagedWizard::CPagedWizard(const QString& strTitle, const Buttons& buttons, QWidget* pParent)
    : QWizard(pParent) {
    setWindowTitle(strTitle);
    setWizardStyle(ClassicStyle);
    SetButtons(buttons);
    connect(this, &QWizard::currentIdChanged, this, &CPagedWizard::OnPage);
}

void CPagedWizard::SetButtons(const Buttons& buttons) {
    const struct {
        WizardButton Button;
        const QString& strText;
        const char* pszName;
    } entries[]{{BackButton, buttons.strBack, "back"},
                {NextButton, buttons.strNext, "next"},
                {FinishButton, buttons.strFinish, "finish"},
                {CancelButton, ContentText::c_strCancel, "cancel"}};
    for (const auto& entry : entries) {
        setButtonText(entry.Button, entry.strText);
        DialogParts::SetNames(button(entry.Button), entry.pszName, entry.strText);
    }
}

bool CPagedWizard::event(QEvent* pEvent) {
    // Not before the wizard really stands there: it would come up over what a page opens.
    if (pEvent->type() == QEvent::WindowActivate)
        QTimer::singleShot(0, this, &CPagedWizard::BeginOnce);
    return QWizard::event(pEvent);
}

void CPagedWizard::showEvent(QShowEvent* pEvent) {
    QWizard::showEvent(pEvent);
    // Where the desktop keeps the wizard from becoming active.
    QTimer::singleShot(c_nActivationMilliseconds, this, &CPagedWizard::BeginOnce);
}

void CPagedWizard::BeginOnce() {
    if (m_bBegun || !isVisible())
        return;
    m_bBegun = true;
    Begin();
}

void CPagedWizard::OnPage() {
    auto* pPage = qobject_cast<CWizardPage*>(currentPage());
    if (pPage == nullptr)
        return;
    pPage->Activate();
    pPage->GetFirstField()->setFocus(Qt::TabFocusReason);
}
