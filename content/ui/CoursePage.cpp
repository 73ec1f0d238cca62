#include "content/ui/CoursePage.h"

#include "content/Texts.h"
#include "content/ui/ChoiceList.h"
#include "platform/ui/DialogParts.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopedValueRollback>

using namespace DialogParts;

CGetCourseInfoPropertyPage::CGetCourseInfoPropertyPage(CCourseChoice& choice, CreateRecord& record)
    : CWizardPage(ContentText::c_strCoursePage), m_choice(choice), m_record(record) {
    using namespace ContentText;
    m_pSearch = Named(new QLineEdit(this), "courseSearch", c_strCourseSearch);
    m_pList = Named(new CChoiceList(this), "courseList", c_strCourseList);
    // Thousands of courses are laid out at once.
    m_pList->setUniformItemSizes(true);
    m_pDetails = Named(ReadOnlyText(this), "courseDetails", c_strCourseDetails);
    m_pPassword = Named(new QLineEdit(this), "password", c_strPassword);
    m_pPassword->setEchoMode(QLineEdit::Password);

    auto* pLayout = new QGridLayout(this);
    pLayout->setColumnStretch(0, 3);
    pLayout->setColumnStretch(1, 2);
    pLayout->addWidget(LabelFor(c_strCourseSearch, m_pSearch), 0, 0);
    pLayout->addWidget(m_pSearch, 1, 0);
    pLayout->addWidget(LabelFor(c_strCourseList, m_pList), 2, 0);
    pLayout->addWidget(m_pList, 3, 0);
    pLayout->addWidget(LabelFor(c_strCourseDetails, m_pDetails), 2, 1);
    pLayout->addWidget(m_pDetails, 3, 1);
    pLayout->addWidget(LabelFor(c_strPassword, m_pPassword), 4, 0);
    pLayout->addWidget(m_pPassword, 5, 0);
    pLayout->setRowStretch(3, 1);

    EnableChoice(false);
    connect(m_pSearch, &QLineEdit::textChanged, this, &CGetCourseInfoPropertyPage::Search);
    connect(m_pList, &QListWidget::itemSelectionChanged, this, &CGetCourseInfoPropertyPage::ShowSelected);
}

void CGetCourseInfoPropertyPage::EnableChoice(bool bOn) {
    for (QWidget* pControl : std::initializer_list<QWidget*>{m_pList, m_pDetails, m_pPassword})
        pControl->setEnabled(bOn);
}

bool CGetCourseInfoPropertyPage::FetchCourses() {
    if (!m_choice.Fetch())
        return false;
    for (const CCourseInfo& info : m_choice.GetCourses())
        m_pList->addItem(info.Name);
    EnableChoice(true);
    return true;
}

QWidget* CGetCourseInfoPropertyPage::GetFirstField() const {
    return m_pSearch;
}

int CGetCourseInfoPropertyPage::Selected() const {
    return m_pList->selectedItems().isEmpty() ? -1 : m_pList->currentRow();
}

void CGetCourseInfoPropertyPage::Search(const QString& strText) {
    const int nSelected = Selected();
    if (nSelected >= 0 && m_choice.GetCourses().at(nSelected).Name == strText)
        return;
    const int nIndex = m_choice.FindByPrefix(strText);
    if (nIndex < 0)
        return;
    // What is being typed stays as typed.
    const QScopedValueRollback searching(m_bSearching, true);
    m_pList->setCurrentRow(nIndex);
}

void CGetCourseInfoPropertyPage::ShowSelected() {
    const int nIndex = Selected();
    m_pDetails->setPlainText(nIndex < 0 ? QString()
                                        : CCourseChoice::DetailsText(m_choice.GetCourses().at(nIndex)));
    if (!m_bSearching && nIndex >= 0)
        m_pSearch->setText(m_choice.GetCourses().at(nIndex).Name);
}

bool CGetCourseInfoPropertyPage::validatePage() {
    switch (m_choice.Next(Selected(), m_pPassword->text())) {
    case CCourseChoice::ENext::Go:
        m_record.Info = m_choice.GetChosen();
        return true;
    case CCourseChoice::ENext::StayOnPassword:
        m_pPassword->setFocus();
        m_pPassword->selectAll();
        return false;
    case CCourseChoice::ENext::Stay:
        return false;
    }
    return false;
}
