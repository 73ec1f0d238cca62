#pragma once

#include "tests/journey/Steps.h"

#include <QList>

#include <utility>

/// A node's content as a person makes it: the kind, and what goes into which field. A name alone is a button
/// or a box to tick.
struct Made {
    QString strTitle;
    int nKind = 0;
    QList<std::pair<QString, QString>> entries;
    /// The question about an Office file comes, and is answered with yes.
    bool bConverts = false;
    /// It comes, and is answered with no.
    bool bKeeps = false;
};

/// Makes nodes with the wizard, from the material that the caller has laid out.
class CContentSteps : public CSteps {
public:
    CContentSteps(const QString& strFolder, QString strMaterial)
        : CSteps(strFolder), m_strMaterial(std::move(strMaterial)) {}

protected:
    void OpenCourse();
    /// A node with its content, which shows.
    void Make(const Made& made);
    /// Up to the wizard's end.
    void Enter(const Made& made);
    /// A new node, and the wizard for its content up to the page with the fields.
    void OpenWizard(const QString& strTitle, int nKind);
    void AddNode(const QString& strTitle);
    /// At its beginning: a button to choose by may be wider than what hears the mouse.
    void ClickButton(const QString& strName, const QString& strWindow);
    void LeaveEditor();
    /// A player that shows has begun to play, and drawn.
    void WaitForFilm();

    QString m_strMaterial;

private:
    void Enter(const QString& strField, const QString& strText);
    void SetLink(const QString& strTarget);
    void WaitForContent(const Made& made);
};
