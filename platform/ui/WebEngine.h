#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

class QMimeData;
class QPoint;
class QWidget;

/// How a call into the engine ended.
struct SEngineAnswer {
    enum class EState {
        Value,       ///< Value holds the answer
        Undefined,   ///< the script ran and gave nothing
        ScriptError, ///< strError says what the script threw
        TimeOut,     ///< no answer within the limit; the page may still be at it
        Gone,        ///< the page, its process or the program ended meanwhile
        Stopped,     ///< of a load: the engine could only put the file on the disk
        Busy         ///< refused: another call of this engine runs
    };
    EState State = EState::Gone;
    QJsonValue Value;
    QString strError;

    bool HasValue() const { return State == EState::Value; }
};

/// What a page of an engine may reach. Folders are in backslash form.
struct SEngineAccess {
    QStringList Folders;
    /// Pictures and media from anywhere on the machine; no script of the page runs.
    bool bEditing = false;
    bool bNetwork = false;
    /// A page of the web: nothing from the disk, and a profile of its own.
    bool bWebPage = false;
    /// A click on a link leads on even while editing.
    bool bFollowsLinks = false;
    /// Media that the engine can't play give way to cards, whose click is a wish for a new window.
    bool bReplaceMedia = false;

    bool operator==(const SEngineAccess&) const = default;
};

/// A browser engine, as the surface sees it. Made by the module; every function is called on the interface
/// thread. The calls that wait keep their state apart from the object, which may be destroyed meanwhile: they
/// then answer Gone.
class IWebEngine {
public:
    virtual ~IWebEngine() = default;

    /// The engine's widget; the engine owns it and it goes with the engine.
    virtual QWidget* Widget() = 0;

    /// Holds from the next Load on.
    virtual void SetAccess(const SEngineAccess& access) = 0;

    /// Loads and waits; false when the load failed, Stopped for what is no page nor anything else it shows.
    virtual SEngineAnswer Load(const QUrl& url, int nMilliseconds) = 0;
    /// Begins to load and doesn't wait. Told once from the event loop: true as soon as a document of the load
    /// is there, false when it failed before, TimeOut behind the limit, Gone when the page's process ended.
    /// Nothing is told when another load takes its place. False when refused.
    virtual bool Begin(const QUrl& url, int nMilliseconds,
                       std::function<void(const SEngineAnswer&)> told) = 0;
    /// The same for the page of a Load that ended with TimeOut: told how its loading ends. Behind the limit
    /// the page and what it runs are gone.
    virtual void Await(int nMilliseconds, std::function<void(const SEngineAnswer&)> told) = 0;
    /// Loads this document, of at most c_nMaxDocument characters, as if it stood at the URL, and waits.
    virtual SEngineAnswer LoadDocument(const QString& strHtml, const QUrl& url, int nMilliseconds) = 0;
    static constexpr qsizetype c_nMaxDocument = 200'000;
    /// Shows a text of the program's own, as a document at "about:blank".
    virtual SEngineAnswer ShowOwnPage(const QString& strHtml, int nMilliseconds) = 0;

    /// Calls a function of the editor's own script, in a world that the page's scripts don't see.
    virtual SEngineAnswer Call(const QString& strFunction, const QJsonArray& arguments,
                               int nMilliseconds) = 0;
    /// The same without waiting: the answer comes from the event loop, and is Gone when the page goes away
    /// first.
    virtual void CallLater(const QString& strFunction, const QJsonArray& arguments,
                           std::function<void(const SEngineAnswer&)> answer) = 0;
    /// Runs a script as the page's own.
    virtual SEngineAnswer RunInPage(const QString& strScript, int nMilliseconds) = 0;

    virtual QUrl Url() const = 0;

    /// How many keys the page was given since it is edited; they take another way to it than a call, and the
    /// later call may be there first. The page counts those that have come to it ("keysCome").
    virtual int KeysGiven() const = 0;

    /// By which markup that was copied in a page that is edited is known; another one in each run.
    virtual QString CopyMark() const = 0;

    /// Called from the event loop. Only OnSelectionChanged waits for a running call to end.
    std::function<void()> OnSelectionChanged;
    /// The person wants to paste into a page that is edited, in whatever way; the engine itself does nothing.
    enum class EPaste { All, Text, Selection };
    std::function<void(EPaste)> OnPaste;
    /// The same by dropping at a place of the page, in its own pixels.
    std::function<void(const QMimeData&, const QPoint&)> OnDrop;
    /// bByPerson: by the person's click; else by the page itself.
    std::function<void(const QUrl&, bool bByPerson)> OnNewWindow;
    /// The person has clicked on a link to a file that isn't there.
    std::function<void(const QUrl&)> OnLinkMissing;
    /// The page stands at another place: another page or an anchor, or a frame of it shows another document.
    std::function<void()> OnMoved;
    /// The page's process ended; the engine goes on with the next Load.
    std::function<void()> OnPageLost;
};

/// What the module exports, under the names of the constants: the engine's start, once and before the first
/// is made, on the interface thread; and the maker of an engine.
using WebEngineStart = void (*)();
using WebEngineFactory = IWebEngine* (*)(QWidget* pParent);
inline constexpr const char* c_szWebEngineStart = "VorelStartWebEngine";
inline constexpr const char* c_szWebEngineFactory = "VorelMakeWebEngine";
