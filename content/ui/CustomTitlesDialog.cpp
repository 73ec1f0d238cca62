#include "content/ui/CustomTitlesDialog.h"

#include "content/Texts.h"
#include "course/CustomTitles.h"
#include "platform/ui/ByteLimit.h"
#include "platform/ui/DialogParts.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

/// In characters; longer titles can be scrolled.
constexpr int c_nFieldWidth = 22;
constexpr int c_nMaxInput = 1 << 20;

} // namespace

CCustomTitlesDialog::CCustomTitlesDialog(const QStringList& titles, bool bIntroduction, QWidget* pParent)
    : QDialog(pParent) {
    setObjectName(QStringLiteral("CCustomTitlesDialog"));
    setWindowTitle(ContentText::c_strCustomTitlesDialog);
    auto* pLayout = new QVBoxLayout(this);
    QGroupBox* pGroup = nullptr;
    QFormLayout* pForm = nullptr;
    for (const CustomTitles::Role& role : CustomTitles::Roles()) {
        if (pGroup == nullptr || pGroup->title() != role.strGroup) {
            pGroup = new QGroupBox(role.strGroup, this);
            pForm = new QFormLayout(pGroup);
            pLayout->addWidget(pGroup);
        }
        const auto nRole = m_fields.size();
        auto* pField = new QLineEdit(pGroup);
        DialogParts::SetNames(pField, qPrintable(QStringLiteral("title%1").arg(nRole)), role.strLabel);
        pField->setMinimumWidth(fontMetrics().horizontalAdvance(QString(c_nFieldWidth, u'栏')));
        pField->setMaxLength(c_nMaxInput);
        pField->setText(titles.value(nRole));
        pField->home(false);
        pForm->addRow(role.strLabel, pField);
        m_fields.append(pField);
        if (nRole == CustomTitles::c_nIntroduction) {
            new CByteLimit(pField, CustomTitles::c_nIntroductionBytes);
            pField->setEnabled(bIntroduction);
            pForm->labelForField(pField)->setEnabled(bIntroduction);
        }
    }
    DialogParts::AddOkAndCancel(*this, *pLayout);
    m_fields.first()->setFocus();
}

QStringList CCustomTitlesDialog::GetTitles() const {
    QStringList titles;
    for (const QLineEdit* pField : m_fields)
        titles.append(DialogParts::TextOf(*pField));
    return titles;
}
