#pragma once

#include <QString>

class CBookNode;

namespace Torvane::Dialog::MFC {
class IPeople;
}

/// Records a lecture; tests have recorders of their own.
class IVideoMaker {
public:
    virtual ~IVideoMaker() = default;
    /// Has a lecture recorded into a new folder below strFolder (with a trailing backslash), in which the
    /// node's content is being built, and answers that folder's name. Called on the interface thread, and
    /// returns when the recorder has ended. Throws Torvane::CRunException.
    virtual QString CreateVideoNode(CBookNode& node, const QString& strFolder) = 0;
    /// Whether what plays lectures and what encodes them is at hand, as found at the start.
    virtual bool HasPlayer() const { return true; }
    virtual bool HasEncoder() const { return true; }
};

/// With the recorder that stands beside the program.
class CVideoMaker : public IVideoMaker {
public:
    CVideoMaker(Torvane::Dialog::MFC::IPeople& people, bool bHasPlayer, bool bHasEncoder)
        : m_people(people), m_bHasPlayer(bHasPlayer), m_bHasEncoder(bHasEncoder) {}

    QString CreateVideoNode(CBookNode& node, const QString& strFolder) override;
    bool HasPlayer() const override { return m_bHasPlayer; }
    bool HasEncoder() const override { return m_bHasEncoder; }

private:
    /// The folder's name of an earlier lecture of the node that the person wants to use; empty for none.
    QString OfferKept(const CBookNode& node, const QString& strFolder);

    Torvane::Dialog::MFC::IPeople& m_people;
    bool m_bHasPlayer;
    bool m_bHasEncoder;
};
