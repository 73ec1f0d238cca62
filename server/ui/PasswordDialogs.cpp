#include "server/ui/PasswordDialogs.h"

#include "server/Texts.h"
#include "server/ui/DialogParts.h"

#include <QLabel>

namespace {

/// The form of a dialog, below its prompt.
QFormLayout* AddForm(QDialog* pDialog, const QString& strPrompt) {
    auto* pLayout = new QVBoxLayout(pDialog);
    auto* pPrompt = new QLabel(strPrompt);
    pPrompt->setObjectName(QStringLiteral("prompt"));
    pPrompt->setTextFormat(Qt::PlainText);
    pPrompt->setWordWrap(true);
    pLayout->addWidget(pPrompt);
    auto* pForm = new QFormLayout;
    pLayout->addLayout(pForm);
    return pForm;
}

/// A text that can be read and copied; it stands on the dialog's own ground, as what can't be typed into.
void ShowOnly(QLineEdit* pField, const QString& strText) {
    pField->setText(strText);
    pField->setReadOnly(true);
    QPalette palette = pField->palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    pField->setPalette(palette);
}

} // namespace

CPasswordDialog::CPasswordDialog(const CCourseInfo& info, QWidget* pParent) : QDialog(pParent) {
    setObjectName(QStringLiteral("CPasswordDialog"));
    setWindowTitle(ServerText::c_strPasswordTitle);
    QFormLayout* pForm = AddForm(this, ServerText::c_strPasswordPrompt);
    ShowOnly(AddField(pForm, ServerText::c_strCourseLabel, QStringLiteral("course")), info.Name);
    ShowOnly(AddField(pForm, ServerText::c_strTeacherLabel, QStringLiteral("teacher")), info.TeacherName);
    m_pPassword =
        AddField(pForm, ServerText::c_strPasswordLabel, QStringLiteral("password"), QLineEdit::Password);
    AddButtons(this, [this] { accept(); });
    m_pPassword->setFocus();
}

QString CPasswordDialog::GetPassword() const {
    return m_pPassword->text();
}

CChangePasswordDialog::CChangePasswordDialog(const QString& strPrompt, Torvane::Dialog::MFC::IPeople& people,
                                             QWidget* pParent)
    : QDialog(pParent), m_people(people) {
    setObjectName(QStringLiteral("CChangePasswordDialog"));
    setWindowTitle(ServerText::c_strChangeTitle);
    QFormLayout* pForm = AddForm(this, strPrompt);
    m_pOld = AddField(pForm, ServerText::c_strOldLabel, QStringLiteral("old"), QLineEdit::Password);
    m_pNew = AddField(pForm, ServerText::c_strNewLabel, QStringLiteral("new"), QLineEdit::Password);
    m_pConfirm =
        AddField(pForm, ServerText::c_strConfirmLabel, QStringLiteral("confirm"), QLineEdit::Password);
    AddButtons(this, [this] { OnOk(); });
    m_pOld->setFocus();
}

ISessionDialogs::PasswordChange CChangePasswordDialog::GetChange() const {
    return {m_pOld->text(), m_pNew->text()};
}

void CChangePasswordDialog::OnOk() {
    const PasswordFault fault = CheckPasswordChange(m_pOld->text(), m_pNew->text(), m_pConfirm->text());
    if (fault.Field == EPasswordField::None) {
        accept();
        return;
    }
    m_people.Notice(fault.strMessage);
    if (fault.bEmptyConfirm)
        m_pConfirm->clear();
    QLineEdit* pField = fault.Field == EPasswordField::Old   ? m_pOld
                        : fault.Field == EPasswordField::New ? m_pNew
                                                             : m_pConfirm;
    pField->setFocus();
    pField->selectAll();
}
