#include "editor/ui/EditorDialogs.h"

#include "editor/Texts.h"
#include "platform/ui/ColorPicker.h"
#include "platform/ui/DialogParts.h"

#include <QDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

using Torvane::Control::MFC::CColorPicker;

namespace EditorDialogs {

namespace {

constexpr int c_nMaxLines = 1000;
constexpr int c_nInputWidth = 320;

/// A dialog that stands over the whole window.
QDialog* NewDialog(const char* szName, const QString& strTitle, QWidget* pParent) {
    auto* pDialog = new QDialog(pParent->window());
    pDialog->setObjectName(QLatin1StringView(szName));
    pDialog->setWindowTitle(strTitle);
    return pDialog;
}

/// The fields of "表格属性", read back by their names.
class CTableForm {
public:
    explicit CTableForm(QGroupBox& group) : m_form(*new QFormLayout(&group)) {}

    QLineEdit* AddText(const QString& strLabel, const char* szName, const QString& strText) {
        auto* pEdit = DialogParts::Named(new QLineEdit(strText), szName, strLabel);
        m_form.addRow(strLabel, pEdit);
        return pEdit;
    }

    void AddNumber(const QString& strLabel, const char* szName, int nValue) {
        QLineEdit* pEdit = AddText(strLabel, szName, QString::number(nValue));
        pEdit->setValidator(new QIntValidator(0, c_nMaxLines, pEdit));
    }

    void AddColour(const QString& strLabel, const char* szName, const QString& strText) {
        auto* pEdit = DialogParts::Named(new QLineEdit(strText), szName, strLabel);
        auto* pPicker = new CColorPicker;
        pPicker->setObjectName(QLatin1StringView(szName) + QStringLiteral("Picker"));
        pPicker->setAccessibleName(EditorTexts::c_strPickColour.arg(DialogParts::NameOf(strLabel)));
        pPicker->setToolTip(pPicker->accessibleName());
        pPicker->setAutoDefault(false);
        pPicker->SetBuddy(*pEdit);
        auto* pRow = new QHBoxLayout;
        pRow->addWidget(pEdit);
        pRow->addWidget(pPicker);
        m_form.addRow(strLabel, pRow);
        qobject_cast<QLabel*>(m_form.labelForField(pRow))->setBuddy(pEdit);
    }

private:
    QFormLayout& m_form;
};

HtmlFragments::TableParameters ReadTable(const QDialog& dialog) {
    const auto text = [&](const char* szName) {
        return DialogParts::TextOf(*dialog.findChild<QLineEdit*>(QLatin1StringView(szName)));
    };
    return {text("rows").toInt(), text("columns").toInt(), text("width"),        text("border"),
            text("spacing"),      text("padding"),         text("borderColour"), text("background")};
}

} // namespace

std::optional<QString> AskText(const QString& strPrompt, QWidget* pParent) {
    auto* pDialog = NewDialog("CInputDialog", EditorTexts::c_strInputTitle, pParent);
    auto* pLayout = new QVBoxLayout(pDialog);
    auto* pEdit = DialogParts::Named(new QLineEdit(pDialog), "text", strPrompt);
    pEdit->setMinimumWidth(c_nInputWidth);
    pLayout->addWidget(DialogParts::LabelFor(strPrompt, pEdit));
    pLayout->addWidget(pEdit);
    DialogParts::AddOkAndCancel(*pDialog, *pLayout);
    pEdit->setFocus();
    return DialogParts::Run(pDialog, [pEdit](QDialog&) { return DialogParts::TextOf(*pEdit); });
}

std::optional<HtmlFragments::TableParameters> AskTable(const HtmlFragments::TableParameters& shown,
                                                       QWidget* pParent) {
    auto* pDialog = NewDialog("CTableDialog", EditorTexts::c_strTableTitle, pParent);
    auto* pLayout = new QVBoxLayout(pDialog);
    auto* pGroup = new QGroupBox(EditorTexts::c_strTableGroup, pDialog);
    pLayout->addWidget(pGroup);
    CTableForm form(*pGroup);
    form.AddNumber(EditorTexts::c_strTableRows, "rows", shown.nRows);
    form.AddNumber(EditorTexts::c_strTableColumns, "columns", shown.nColumns);
    form.AddText(EditorTexts::c_strTableWidth, "width", shown.strWidth);
    form.AddText(EditorTexts::c_strTableBorder, "border", shown.strBorder);
    form.AddText(EditorTexts::c_strTableSpacing, "spacing", shown.strCellSpacing);
    form.AddText(EditorTexts::c_strTablePadding, "padding", shown.strCellPadding);
    form.AddColour(EditorTexts::c_strTableBorderColour, "borderColour", shown.strBorderColour);
    form.AddColour(EditorTexts::c_strTableBackground, "background", shown.strBackground);
    DialogParts::AddOkAndCancel(*pDialog, *pLayout);
    auto* pFirst = pDialog->findChild<QLineEdit*>(QStringLiteral("rows"));
    pFirst->setFocus();
    pFirst->selectAll();
    return DialogParts::Run(pDialog, &ReadTable);
}

std::optional<quint32> AskColour(quint32 nShown, QWidget* pParent) {
    const QColor shown(static_cast<int>(nShown & 0xFF), static_cast<int>((nShown >> 8) & 0xFF),
                       static_cast<int>((nShown >> 16) & 0xFF));
    const auto chosen = CColorPicker::Ask(shown, pParent->window());
    if (!chosen)
        return std::nullopt;
    return static_cast<quint32>(chosen->red() | (chosen->green() << 8) | (chosen->blue() << 16));
}

} // namespace EditorDialogs
