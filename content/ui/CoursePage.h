#pragma once

#include "content/ui/WizardPage.h"
#include "server/CourseChoice.h"

class QLineEdit;
class QListWidget;
class QPlainTextEdit;

/// Page 1: the course, out of the server's list, and its password.
class CGetCourseInfoPropertyPage : public CWizardPage {
    Q_OBJECT
public:
    CGetCourseInfoPropertyPage(CCourseChoice& choice, CreateRecord& record);

    /// Fetches the list. Until it is there list, details and password are off. False when there is none to be
    /// had, which the person has been told.
    bool FetchCourses();

    QWidget* GetFirstField() const override;
    bool validatePage() override;

private:
    void Search(const QString& strText);
    void ShowSelected();
    /// Index of the selected course; -1 for none.
    int Selected() const;
    void EnableChoice(bool bOn);

    CCourseChoice& m_choice;
    CreateRecord& m_record;
    QLineEdit* m_pSearch;
    QListWidget* m_pList;
    QPlainTextEdit* m_pDetails;
    QLineEdit* m_pPassword;
    bool m_bSearching = false;
};
