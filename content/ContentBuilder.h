#pragma once

#include "content/BookNode.h"
#include "content/NodeFileParams.h"
#include "platform/base/People.h"

#include <functional>
#include <optional>

class IVideoMaker;

/// Turns what the content wizard gave into a node's files and its row. The new content is built beside the
/// old and takes its place in one step, so that neither a failure nor a cancel costs anything of the old.
/// Long work has a status window; what fails is shown to the person.
class CNodeContentBuilder {
public:
    /// Whether the node and its course are still there: a box lets the program run on, and the course may be
    /// closed behind it.
    using IsThere = std::function<bool()>;

    /// All of them must outlive this object; without a maker of videos none is made.
    CNodeContentBuilder(CBookNode& node, Torvane::Dialog::MFC::IPeople& people, IsThere isThere,
                        IVideoMaker* pVideos = nullptr);

    /// True when the content stands, and for a folder when all of it came in. The old content is what it was
    /// otherwise; but what an import has made stays.
    bool Create(const CNodeFileParams& params);

private:
    bool Build(const CNodeFileParams& params);

    CBookNode& m_node;
    Torvane::Dialog::MFC::IPeople& m_people;
    IsThere m_isThere;
    IVideoMaker* m_pVideos;
};

/// Whether the file is to become a web page, as only an Office file may. Nothing where the settings say that
/// the person is to be asked.
std::optional<bool> IsSavedAsWebPage(const QString& strPath);
/// Asks where the settings say so, and keeps an answer that holds for all.
bool AskSaveAsWebPage(const QString& strPath, Torvane::Dialog::MFC::IPeople& people);
