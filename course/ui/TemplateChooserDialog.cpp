#include "course/ui/TemplateChooserDialog.h"

#include "course/Texts.h"
#include "foundation/SysInfo.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/PicturePane.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr QSize c_pictureSize(400, 300);
constexpr int c_nMargin = 11;
constexpr int c_nSpacing = 8;

} // namespace

CTemplateChooserDialog::CTemplateChooserDialog(const CTemplateStore& store, const QString& strCurrent,
                                               QWidget* pParent)
    : QDialog(pParent), m_store(store) {
    using namespace DialogParts;
    setObjectName(QStringLiteral("templateDialog"));
    setWindowTitle(CourseText::c_strSetTemplateTitle);
    m_pList = Named(new QComboBox(this), "templateList", CourseText::c_strSetTemplateLabel);
    // A template with a long name must not push the dialog apart.
    m_pList->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_pPicture = Named(new CPicturePane(this), "templatePicture", CourseText::c_strTemplatePicture);
    m_pPicture->setFixedSize(c_pictureSize);
    auto* pButtons = new QDialogButtonBox(this);
    auto* pOk = pButtons->addButton(CourseText::c_strOk, QDialogButtonBox::AcceptRole);
    SetNames(pOk, "ok", CourseText::c_strOk);
    pOk->setDefault(true);
    SetNames(pButtons->addButton(CourseText::c_strCancel, QDialogButtonBox::RejectRole), "cancel",
             CourseText::c_strCancel);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pLayout->setSpacing(c_nSpacing);
    pLayout->setSizeConstraint(QLayout::SetFixedSize);
    pLayout->addWidget(LabelFor(CourseText::c_strSetTemplateLabel, m_pList));
    pLayout->addWidget(m_pList);
    pLayout->addWidget(m_pPicture);
    pLayout->addWidget(pButtons);

    QStringList templates;
    m_store.ListTemplates(templates);
    m_pList->addItems(templates);
    m_pList->setCurrentIndex(qMax(0, static_cast<int>(templates.indexOf(strCurrent))));
    pOk->setEnabled(!templates.isEmpty());
    ShowPicture();
    connect(m_pList, &QComboBox::currentIndexChanged, this, &CTemplateChooserDialog::ShowPicture);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QString CTemplateChooserDialog::GetSelected() const {
    return m_pList->currentText();
}

void CTemplateChooserDialog::ShowPicture() {
    m_pPicture->Load(m_store.GetPreviewPath(GetSelected()));
}

std::optional<QString> CTemplateChooser::ChooseTemplate(const QString& strCurrent) {
    QWidget* pAbove = QApplication::activeModalWidget();
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    // The window over which it stands may go while it is open, and takes the dialog with it.
    const QPointer<CTemplateChooserDialog> pDialog(
        new CTemplateChooserDialog(store, strCurrent, pAbove != nullptr ? pAbove : m_pParent.data()));
    const bool bAccepted = pDialog->exec() == QDialog::Accepted;
    if (!pDialog)
        return std::nullopt;
    const QString strSelected = pDialog->GetSelected();
    delete pDialog;
    return bAccepted && !strSelected.isEmpty() ? std::optional(strSelected) : std::nullopt;
}
