#pragma once

#include "companions/compiler/SitePlan.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What stands within the frame.
struct FramedContent {
    /// Of the window; the course's name is added.
    QString Title;
    /// More for the head, behind the frame's own parts and before the skin.
    QString Head;
    QString Main;
};

/// Writes the pages of the site: header, tree, content, footer, in UTF-8 and marked as Chinese. The tree is
/// plain HTML and works without scripts.
class CPageFrame {
public:
    explicit CPageFrame(const CSitePlan& plan);

    /// The page of a node. Content that opens in a window of its own stands without the tree.
    QByteArray NodePage(int nNode, const FramedContent& content) const;
    /// The page "index.html", with which a visitor begins.
    QByteArray StartPage(const FramedContent& content) const;

    /// A link to a node from a page in a folder: the opening tag, with what the node's open type asks for.
    QString NodeLink(int nNode, const QString& strFromFolder, const QString& strMore = QString()) const;

    /// Whether the compiler has to deliver the plain skin.
    bool HasSkin() const { return !m_strSkin.isEmpty(); }

private:
    QByteArray Page(const QString& strFolder, const QString& strBodyClass, const FramedContent& content,
                    const QString& strNavigation) const;
    QString Header(const QString& strFolder) const;
    QString Footer() const;
    QString Navigation(int nCurrent, const QString& strFolder) const;
    class CTreeWriter;

    const CSitePlan& m_plan;
    QString m_strSkin;
};
