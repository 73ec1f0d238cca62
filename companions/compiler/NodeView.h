#pragma once

#include "companions/compiler/Lecture.h"
#include "companions/compiler/PageFrame.h"
#include "companions/compiler/SitePlan.h"

#include <QString>

/// What a node's page shows within its frame, by the node's view. All texts are escaped here.
class CNodeView {
public:
    CNodeView(const CSitePlan& plan, const CPageFrame& frame) : m_plan(plan), m_frame(frame) {}

    /// Everything but editor pages, which come as HTML, and lectures.
    QString Main(int nNode) const;
    /// strFilm is the film that browsers play, relative to the site's root; empty for none.
    QString LectureMain(int nNode, const Lecture& lecture, const QString& strFilm) const;
    /// An editor page, as HTML of its own.
    QString PageMain(int nNode, const QString& strBody) const;
    /// An editor page that could not be taken apart, in a frame of its own. strFile is relative to the site.
    QString RawPageMain(int nNode, const QString& strFile) const;
    QString StartMain() const;

    /// The word for a node's kind of content.
    static QString KindWord(const SiteNode& node);

private:
    QString Heading(int nNode) const;
    QString ChildList(int nNode, const QString& strFolder) const;
    QString Embed(int nNode, const QString& strAddress) const;
    QString OpenAlone(int nNode, const QString& strAddress, const QString& strName = {}) const;
    QString FileCard(int nNode, const QString& strSource, const QString& strShownName) const;
    QString OutlineList(const Lecture& lecture, const QString& strFilm) const;
    QString FileAddress(int nNode, const QString& strSource) const;
    QString FileMain(int nNode) const;
    QString PlainTextFile(const QString& strSource) const;
    QString Player(int nNode, const QString& strAddress, const QString& strName) const;

    const CSitePlan& m_plan;
    const CPageFrame& m_frame;
};
