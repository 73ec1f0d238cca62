#include "content/ui/TreeDialogs.h"

#include "content/Texts.h"
#include "content/ui/CreateNodeFileWizard.h"
#include "content/ui/CustomTitlesDialog.h"
#include "content/ui/InSiteLinkDialog.h"
#include "content/ui/OpenTypeDialog.h"
#include "platform/ui/DialogParts.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

// In characters, so that larger letters get a larger dialog.
constexpr int c_nTextWidth = 27;
constexpr int c_nListLines = 9;
/// Room for several thousand titles in one input.
constexpr int c_nMaxInput = 1 << 20;

int WidthOf(const QWidget& widget, int nCharacters) {
    return widget.fontMetrics().horizontalAdvance(QString(nCharacters, u'栏'));
}

QLabel* TextLabel(const QString& strText, QWidget& dialog) {
    auto* pLabel = new QLabel(strText, &dialog);
    pLabel->setWordWrap(true);
    pLabel->setMinimumWidth(WidthOf(dialog, c_nTextWidth));
    return pLabel;
}

} // namespace

QWidget* CTreeDialogs::Window() const {
    return m_pParent != nullptr ? m_pParent->window() : nullptr;
}

bool CTreeDialogs::ConfirmDeletion(const QString& strTitles) {
    auto* pDialog = new QDialog(Window());
    pDialog->setObjectName(QStringLiteral("confirmDeletion"));
    pDialog->setWindowTitle(ContentText::c_strConfirmDeleteTitle);
    // No control has the question for its name: whoever listens to the dialog hears it here.
    pDialog->setAccessibleDescription(ContentText::c_strConfirmDelete);

    auto* pPicture = new QLabel(pDialog);
    const QStyle& style = *pDialog->style();
    const int nSize = style.pixelMetric(QStyle::PM_MessageBoxIconSize);
    pPicture->setPixmap(style.standardIcon(QStyle::SP_MessageBoxQuestion)
                            .pixmap({nSize, nSize}, pDialog->devicePixelRatioF()));
    auto* pLine = new QHBoxLayout;
    pLine->addWidget(pPicture, 0, Qt::AlignTop);
    pLine->addWidget(TextLabel(ContentText::c_strConfirmDelete, *pDialog), 1);

    QPlainTextEdit* pTitles = DialogParts::ReadOnlyText(pDialog);
    DialogParts::SetNames(pTitles, "titles", ContentText::c_strDeletedTitles);
    pTitles->setPlainText(strTitles);
    pTitles->setMinimumHeight(c_nListLines * pTitles->fontMetrics().lineSpacing());

    auto* pLayout = new QVBoxLayout(pDialog);
    pLayout->addLayout(pLine);
    pLayout->addWidget(pTitles, 1);
    DialogParts::AddOkAndCancel(*pDialog, *pLayout, DialogParts::EDefaultButton::Cancel)->setFocus();
    return DialogParts::Run(pDialog, [](const QDialog&) { return true; }).has_value();
}

std::optional<QString> CTreeDialogs::AskTitles(const QString& strPreset) {
    auto* pDialog = new QDialog(Window());
    pDialog->setObjectName(QStringLiteral("askTitles"));
    pDialog->setWindowTitle(ContentText::c_strTitleDialog);
    auto* pTitles = DialogParts::Named(new QLineEdit(pDialog), "titles", ContentText::c_strTitleDialog);
    pTitles->setMaxLength(c_nMaxInput);
    pTitles->setText(strPreset);
    pTitles->selectAll();
    QLabel* pPrompt = TextLabel(ContentText::c_strTitlePrompt, *pDialog);
    pPrompt->setBuddy(pTitles);

    auto* pLayout = new QVBoxLayout(pDialog);
    pLayout->addWidget(pPrompt);
    pLayout->addWidget(pTitles);
    pLayout->addStretch();
    DialogParts::AddOkAndCancel(*pDialog, *pLayout);
    pTitles->setFocus();
    return DialogParts::Run(pDialog, [pTitles](const QDialog&) { return DialogParts::TextOf(*pTitles); });
}

std::optional<qint32> CTreeDialogs::AskOpenType(qint32 nPresent) {
    return DialogParts::Run(new COpenTypeDialog(nPresent, Window()), &COpenTypeDialog::GetOpenType);
}

std::optional<QStringList> CTreeDialogs::AskCustomTitles(const QStringList& titles, bool bIntroduction) {
    return DialogParts::Run(new CCustomTitlesDialog(titles, bIntroduction, Window()),
                            &CCustomTitlesDialog::GetTitles);
}

std::optional<CNodeFileParams> CTreeDialogs::AskContent(const ContentPreset& preset, CBookNode& node) {
    const AskLink askLink = [&node](QWidget* pParent, const QString& strPresent) {
        return AskInSiteLink(node, pParent, strPresent);
    };
    return DialogParts::Run(new CCreateNodeFileWizard(m_people, preset, askLink, Window()),
                            &CCreateNodeFileWizard::GetParams);
}
