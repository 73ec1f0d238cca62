#pragma once

#include "content/NewCourse.h"
#include "server/CourseChoice.h"

#include <QWizardPage>

class CPicturePane;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QToolButton;

/// Page 1: the course, out of the server's list, and its password.
class CGetCourseInfoPropertyPage : public QWizardPage {
    Q_OBJECT
public:
    /// The choice's list has been fetched.
    CGetCourseInfoPropertyPage(CCourseChoice& choice, CreateRecord& record);

    bool validatePage() override;

private:
    void Search(const QString& strText);
    void ShowDetails(int nIndex);

    CCourseChoice& m_choice;
    CreateRecord& m_record;
    QLineEdit* m_pSearch;
    QListWidget* m_pList;
    QPlainTextEdit* m_pDetails;
    QLineEdit* m_pPassword;
    bool m_bSearching = false;
};

/// Page 2: the name and the folder. Shows the folder in native form, takes either form.
class CSelectCourseFolderPropertyPage : public QWizardPage {
    Q_OBJECT
public:
    CSelectCourseFolderPropertyPage(Torvane::Dialog::MFC::IPeople& people, CreateRecord& record);

    void initializePage() override;
    bool validatePage() override;

private:
    void TakeFields();
    void ShowFields();
    void Browse();

    Torvane::Dialog::MFC::IPeople& m_people;
    CreateRecord& m_record;
    CCourseFolderStep m_step;
    QLineEdit* m_pName;
    QLineEdit* m_pFolder;
};

/// Page 3: the template, with its previews.
class CSelectCourseTempletePropertyPage : public QWizardPage {
    Q_OBJECT
public:
    CSelectCourseTempletePropertyPage(Torvane::Dialog::MFC::IPeople& people, CreateRecord& record);

    void initializePage() override;
    bool validatePage() override;

private:
    /// The selected template; empty for none.
    QString Chosen() const;
    void FillTemplates();
    void FillPages();
    void Step(int nRows);
    void ShowPreview();

    Torvane::Dialog::MFC::IPeople& m_people;
    CreateRecord& m_record;
    CTemplateStore m_store;
    QListWidget* m_pTemplates;
    QComboBox* m_pPages;
    QToolButton* m_pPrevious;
    QToolButton* m_pNext;
    CPicturePane* m_pPreview;
};

/// Page 4: what was chosen.
class CShowUserSelectPropertyPage : public QWizardPage {
    Q_OBJECT
public:
    explicit CShowUserSelectPropertyPage(CreateRecord& record);

    void initializePage() override;
    bool validatePage() override;

private:
    CreateRecord& m_record;
    QPlainTextEdit* m_pSummary;
};
