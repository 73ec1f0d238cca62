#include "editor/ui/EditorDialogs.h"

#include "editor/Texts.h"
#include "platform/ui/DialogParts.h"

#include <QColorDialog>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace EditorDialogs {

namespace {

constexpr int c_nMaxCells = 1000;
constexpr int c_nInputWidth = 320;

QDialogButtonBox* AddButtons(QDialog& dialog, QVBoxLayout& layout) {
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    pButtons->button(QDialogButtonBox::Ok)->setText(EditorTexts::c_strOk);
    pButtons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("ok"));
    pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
    pButtons->button(QDialogButtonBox::Cancel)->setText(EditorTexts::c_strCancel);
    pButtons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancel"));
    QObject::connect(pButtons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(pButtons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout.addWidget(pButtons);
    return pButtons;
}

QLineEdit* AddField(QFormLayout& form, const QString& strLabel, const char* szName, const QString& strText) {
    auto* pEdit = new QLineEdit(strText);
    pEdit->setObjectName(QLatin1StringView(szName));
    form.addRow(strLabel, pEdit);
    return pEdit;
}

QLineEdit* AddNumber(QFormLayout& form, const QString& strLabel, const char* szName, int nValue) {
    QLineEdit* pEdit = AddField(form, strLabel, szName, QString::number(nValue));
    pEdit->setValidator(new QIntValidator(0, c_nMaxCells, pEdit));
    return pEdit;
}

/// A text field with a picker beside it, which writes the chosen colour into the field.
QLineEdit* AddColour(QFormLayout& form, const QString& strLabel, const char* szName, const QString& strText) {
    auto* pEdit = new QLineEdit(strText);
    pEdit->setObjectName(QLatin1StringView(szName));
    auto* pPicker = new QPushButton(QStringLiteral("..."));
    pPicker->setObjectName(QLatin1StringView(szName) + QStringLiteral("Picker"));
    pPicker->setAccessibleName(DialogParts::NameOf(strLabel));
    QObject::connect(pPicker, &QPushButton::clicked, pEdit, [pEdit] {
        const QColor colour = QColorDialog::getColor(QColor(pEdit->text()), pEdit->window());
        if (colour.isValid())
            pEdit->setText(colour.name());
    });
    auto* pRow = new QHBoxLayout;
    pRow->addWidget(pEdit);
    pRow->addWidget(pPicker);
    auto* pLabel = new QLabel(strLabel);
    pLabel->setBuddy(pEdit);
    form.addRow(pLabel, pRow);
    return pEdit;
}

} // namespace

std::optional<QString> AskText(const QString& strPrompt, QWidget* pParent) {
    QDialog dialog(pParent);
    dialog.setObjectName(QStringLiteral("CInputDialog"));
    dialog.setWindowTitle(EditorTexts::c_strInputTitle);
    QVBoxLayout layout(&dialog);
    layout.addWidget(new QLabel(strPrompt));
    auto* pEdit = new QLineEdit;
    pEdit->setObjectName(QStringLiteral("text"));
    pEdit->setMinimumWidth(c_nInputWidth);
    layout.addWidget(pEdit);
    AddButtons(dialog, layout);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return pEdit->text();
}

std::optional<HtmlFragments::TableParameters> AskTable(const HtmlFragments::TableParameters& shown,
                                                       QWidget* pParent) {
    QDialog dialog(pParent);
    dialog.setObjectName(QStringLiteral("CTableDialog"));
    dialog.setWindowTitle(EditorTexts::c_strTableTitle);
    QVBoxLayout layout(&dialog);
    auto* pGroup = new QGroupBox(EditorTexts::c_strTableGroup);
    layout.addWidget(pGroup);
    auto* pForm = new QFormLayout(pGroup);
    const auto* pRows = AddNumber(*pForm, EditorTexts::c_strTableRows, "rows", shown.nRows);
    const auto* pColumns = AddNumber(*pForm, EditorTexts::c_strTableColumns, "columns", shown.nColumns);
    const auto* pWidth = AddField(*pForm, EditorTexts::c_strTableWidth, "width", shown.strWidth);
    const auto* pBorder = AddField(*pForm, EditorTexts::c_strTableBorder, "border", shown.strBorder);
    const auto* pSpacing = AddField(*pForm, EditorTexts::c_strTableSpacing, "spacing", shown.strCellSpacing);
    const auto* pPadding = AddField(*pForm, EditorTexts::c_strTablePadding, "padding", shown.strCellPadding);
    const auto* pBorderColour =
        AddColour(*pForm, EditorTexts::c_strTableBorderColour, "borderColour", shown.strBorderColour);
    const auto* pBackground =
        AddColour(*pForm, EditorTexts::c_strTableBackground, "background", shown.strBackground);
    AddButtons(dialog, layout);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return HtmlFragments::TableParameters{pRows->text().toInt(), pColumns->text().toInt(), pWidth->text(),
                                          pBorder->text(),       pSpacing->text(),         pPadding->text(),
                                          pBorderColour->text(), pBackground->text()};
}

std::optional<quint32> AskColour(quint32 nShown, QWidget* pParent) {
    const QColor shown(static_cast<int>(nShown & 0xFF), static_cast<int>((nShown >> 8) & 0xFF),
                       static_cast<int>((nShown >> 16) & 0xFF));
    const QColor colour = QColorDialog::getColor(shown, pParent);
    if (!colour.isValid())
        return std::nullopt;
    return static_cast<quint32>(colour.red() | (colour.green() << 8) | (colour.blue() << 16));
}

} // namespace EditorDialogs
