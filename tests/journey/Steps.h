#pragma once

#include "tests/journey/Robot.h"

#include <QModelIndex>

class QMessageBox;

/// What every way through the program is made of, over the robot. What a later part or the caller must know
/// stands in "facts.txt" of the folder, a line "key: value" each.
class CSteps {
public:
    explicit CSteps(const QString& strFolder)
        : m_strFolder(strFolder), m_robot(strFolder + QStringLiteral("/shots")) {}

protected:
    static const QString c_strBoldButton;
    static const QString c_strFrame;
    static const QString c_strStartup;
    static const QString c_strTree;
    static const QString c_strWizard;

    /// A line of a list or tree, wherever it stands in it; the first one for no text. On the interface
    /// thread.
    static QModelIndex Line(const QString& strView, const QString& strText = QString());
    /// On the interface thread; null when no box is open.
    static QMessageBox* ShownBox();
    /// The text of the line with the cursor. On the interface thread.
    static QString Selected(const QString& strView);

    /// Takes a picture of the wizard and presses a button of it.
    void GoOn(const QString& strShot, const QString& strButton = QStringLiteral("next"));
    void Note(const QString& strKey, const QString& strValue) const;
    QString Fact(const QString& strKey) const;
    /// Waits for a box, takes a picture, checks its text and presses a button.
    void AnswerBox(const QString& strText, const QString& strButton);
    void ClickLine(const QString& strView, const QString& strText = QString(), int nButton = 1);
    /// Takes a line of the tree over another with the mouse, which stays pressed.
    void DragLine(const QString& strText, const QString& strTarget);
    QString RootText();
    /// Goes down the first line of each level to the page at the end.
    void SelectFirstLeaf();
    /// Opens the selected page for editing, with the caret behind its text.
    void EnterEditor();
    void WaitForOpenCourse();
    /// Takes the recent course that the first window offers, and answers the question for its password.
    void OpenRecent();
    void Login(const QString& strPassword);
    /// Chooses a command in the main menu that holds it, with the menu's own letter.
    void Command(int nId);
    /// Asks the main window to close: the last thing that a way does, for the program goes, and the plug-in
    /// with it.
    void Close();

    QString m_strFolder;
    Robot m_robot;

private:
    /// Where a line of a view stands, brought into sight.
    static std::function<QRect(QWidget*)> PlaceOf(const QString& strView, const QString& strText);
};
