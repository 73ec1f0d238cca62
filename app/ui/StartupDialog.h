#pragma once

#include "platform/base/People.h"

#include <QDialog>

class QCheckBox;
class QListWidget;
class QPushButton;
class QTabWidget;
class QTreeWidget;

/// The dialog at the start: a new course, or one of the recent ones.
class CStartupDialog : public QDialog {
    Q_OBJECT
public:
    CStartupDialog(Torvane::Dialog::MFC::IPeople& people, QWidget* pParent);

    bool IsDontShowChecked() const;
    /// The course to open, in backslash form; empty for a new course.
    QString GetCoursePath() const { return m_strCoursePath; }

    void accept() override;

private:
    QWidget* MakeNewTab();
    QWidget* MakeOpenTab();
    void FillRecent();
    void UpdateButtons();
    void Browse();

    Torvane::Dialog::MFC::IPeople& m_people;
    QTabWidget* m_pTabs = nullptr;
    QListWidget* m_pNewList = nullptr;
    QTreeWidget* m_pRecent = nullptr;
    QCheckBox* m_pDontShow = nullptr;
    QPushButton* m_pBrowse = nullptr;
    QPushButton* m_pOk = nullptr;
    QString m_strCoursePath;
};
