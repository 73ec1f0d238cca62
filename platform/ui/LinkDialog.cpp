#include "platform/ui/LinkDialog.h"

#include "platform/ui/DialogParts.h"
#include "platform/ui/Texts.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int c_nAddressWidth = 360;
const QLatin1StringView c_strBeginning("http://");

} // namespace

std::optional<QString> AskLinkAddress(QWidget* pParent, const QString& strPresent) {
    auto* pDialog = new QDialog(pParent ? pParent->window() : nullptr);
    pDialog->setObjectName(QStringLiteral("linkDialog"));
    pDialog->setWindowTitle(UiTexts::c_strLinkTitle);
    auto* pLayout = new QVBoxLayout(pDialog);
    auto* pAddress = DialogParts::Named(
        new QLineEdit(strPresent.isEmpty() ? QString(c_strBeginning) : strPresent, pDialog), "linkAddress",
        UiTexts::c_strLinkPrompt);
    pAddress->setMinimumWidth(c_nAddressWidth);
    // What is pasted takes its place.
    pAddress->selectAll();
    pLayout->addWidget(DialogParts::LabelFor(UiTexts::c_strLinkPrompt, pAddress));
    pLayout->addWidget(pAddress);
    DialogParts::AddOkAndCancel(*pDialog, *pLayout);
    pAddress->setFocus();
    const auto address =
        DialogParts::Run(pDialog, [pAddress](QDialog&) { return pAddress->text().trimmed(); });
    if (!address || address->isEmpty() || *address == c_strBeginning)
        return std::nullopt;
    return address;
}
