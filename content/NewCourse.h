#pragma once

#include "course/Course.h"
#include "course/TemplateStore.h"

#include <QString>
#include <QStringList>

#include <optional>

/// The pages of the new-course wizard without their windows. Paths are in backslash form.

/// The folder page: name and folder of the new course.
class CCourseFolderStep {
public:
    QString strName;
    QString strFolder;

    /// The page comes up for this course. Name and folder are preset anew only when it is another course than
    /// the last time, so that what the person typed survives going back and forth.
    void Enter(const QString& strCourse);

    /// A folder was picked: the course gets folders of its own below it.
    void TakePicked(const QString& strPicked);

    /// What to warn of, empty for nothing, and whether it is about the name or the folder.
    struct Fault {
        QString strWarning;
        bool bName = false;
    };
    /// The checks of Next in their order; the folder is made at the end. Takes needless separators out of
    /// its path first.
    Fault Next();

private:
    QString m_strSeen;
};

/// What the combo box of the template page lists: the overall preview, then the template's pages.
QStringList PreviewRows(const CTemplateStore& store, const QString& strTemplate);

/// The picture of a row of that combo box; empty without a template.
QString PreviewPath(const CTemplateStore& store, const QString& strTemplate, int nRow, const QString& strRow);

/// A row of the node page's tree: a line of the list, and the line above it, negative at the top.
struct NodeRow {
    qsizetype nLine = 0;
    qsizetype nParentLine = -1;
};

/// The rows in the order of the tree, from line 0 on. Nothing for a list that can't be a tree: it leads out
/// of itself, twice to the same line, or deeper than anybody nests.
std::optional<QList<NodeRow>> NodeRows(const QList<InitialNode>& list);

/// The lines of the last page, with CR LF. strShownFolder is the folder as the person reads it.
QString SummaryText(const CreateRecord& record, const QString& strShownFolder);

/// Finish: the template's suggested nodes, and the folder with its trailing backslash.
void CompleteRecord(CreateRecord& record);
