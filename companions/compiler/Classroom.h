#pragma once

#include "companions/compiler/PageFrame.h"
#include "companions/compiler/SitePlan.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// The classroom form: a presentation that fills the screen and steps through the nodes in the order of the
/// tree. A start page holds a frame, in which the slides show, one for each node; a script steps and asks the
/// slides for their keys, since a page that lies on a disk must not look into another. Slides are plain pages
/// with links to their neighbours, for who has no scripts. May be used by several threads at once.
class CClassroom {
public:
    explicit CClassroom(const CSitePlan& plan);

    /// What lies beside the slides, by name: pages and scripts of the presentation itself.
    static QStringList StandingFiles();
    static QStringList Parts();
    QByteArray StandingFile(const QString& strName) const;

    /// The page of a node, where its plan has one.
    QByteArray SlidePage(int nNode, const FramedContent& content) const;

private:
    /// One stop of the presentation.
    struct Step {
        int Node;
        /// Relative to the root, or an address of its own.
        QByteArray Address;
        bool IsOutside;
    };
    void PlanStep(int nNode);
    QByteArray StartPage() const;
    QByteArray CoverPage() const;
    QByteArray CourseScript() const;
    QByteArray Slide(const QByteArray& up, const QByteArray& title, const QByteArray& head,
                     const QByteArray& main, int nStep) const;
    void AppendNeighbour(QByteArray& out, int nStep, const QByteArray& up, const char* szClass,
                         const QString& strWord) const;

    const CSitePlan& m_plan;
    /// Behind the cover, which is step 0.
    QList<Step> m_steps;
    /// Of each node; 0 for one that is no stop.
    QList<int> m_stepOfNode;
};
