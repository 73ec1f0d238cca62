#pragma once

#include <QString>

class CBookNode;

/// Records a lecture; the recorder's own floor implements it.
class IVideoMaker {
public:
    virtual ~IVideoMaker() = default;
    /// Has a lecture recorded into a new folder below strFolder (with a trailing backslash), in which the
    /// node's content is being built, and answers that folder's name. Called on the interface thread, and
    /// returns when the recorder has ended. Throws Torvane::CRunException.
    virtual QString CreateVideoNode(CBookNode& node, const QString& strFolder) = 0;
};
