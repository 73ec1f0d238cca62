#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

/// How the program speaks with the person in front of it.
///
/// These are interfaces without a window, so that every rule which ends in a question can be tested without
/// one. The program answers them with real boxes (platform/ui); a test hands in scripted answers, and an
/// unexpected box fails the test. Paths go in and come out in backslash form; what is shown is native.
namespace Torvane::Dialog::MFC {

enum class BoxIcon { None, Question, Information, Warning, Stop };
enum class BoxButtons { Ok, OkCancel, YesNo, YesNoCancel, RetryCancel };
enum class BoxAnswer { Ok, Cancel, Yes, No, Retry };
/// The button that Enter presses. The last one is for a question whose first loses work for good.
enum class BoxDefault { First, Last };

/// A small window on top of the main window that shows one line at once. It has no button, unless the step
/// may be given up and takes long. It goes with the object.
class CShowStatusDlg {
public:
    virtual ~CShowStatusDlg() = default;

    /// Shows the text and paints it before returning.
    virtual void ShowStatus(const QString& strText) = 0;

    /// What the step is called, above the line.
    virtual void SetTitle(const QString&) {}

    /// Shows how much of a known amount is done; nTotal of 0 takes the bar away.
    virtual void ShowProgress(qint64 nDone, qint64 nTotal) = 0;

    /// The step that begins now may be given up: once it has lasted a moment the window gets the button
    /// "取消", which Escape presses too. False takes the button away. Forgets a press that was.
    virtual void AllowCancel(bool bAllow) = 0;

    /// IPeople::KeepPainting for a step that may be given up: false as soon as the person has given it up.
    /// Keys that were typed for other windows reach them when the step is over.
    virtual bool KeepWaiting() = 0;
};

class IPeople {
public:
    virtual ~IPeople() = default;

    /// A message box. Closing it otherwise than by a button answers Cancel where there is such a button and
    /// Ok for a lone Ok. A YesNo box stands until a button is pressed, since Escape must not lose a page; if
    /// its window goes away, the answer is No.
    virtual BoxAnswer Ask(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon,
                          BoxDefault byEnter = BoxDefault::First) = 0;

    /// The answer to a question that comes again and again, and whether it holds for all that follow.
    struct YesNoAll {
        bool bYes = false;
        bool bAll = false;
    };
    /// "提示" with yes, no and a box to tick. Closing it otherwise than by a button is a no, for this once.
    virtual YesNoAll QueryYesNoAll(const QString& strText) {
        return {Ask(strText, QStringLiteral("提示"), BoxButtons::YesNo, BoxIcon::Question) == BoxAnswer::Yes,
                false};
    }

    virtual std::unique_ptr<CShowStatusDlg> OpenStatus() = 0;

    /// The status window that was opened last and still stands, or null. It stays with who opened it.
    virtual CShowStatusDlg* GetStatus() = 0;

    /// A step that is over sooner needs no status window. Milliseconds.
    virtual qint64 GetPatience() { return 250; }

    /// Keeps every window painted for a moment without taking input; called again and again by whoever blocks
    /// the interface thread. Cheap enough to be called every few milliseconds.
    virtual void KeepPainting() = 0;

    /// While what this gives stands, KeepPainting drops the person's input, which it otherwise leaves for
    /// later: for a wait for another program, with which she works meanwhile. What came before the end is
    /// gone, and of a mouse button that was down already only its release comes.
    class CInputStop {
    public:
        virtual ~CInputStop() = default;
    };
    virtual std::unique_ptr<CInputStop> StopInput() { return nullptr; }

    /// An existing file. strFilter is the file dialogs' own notation, "label|*.a;*.b|label|*.*||".
    virtual std::optional<QString> PickOpenFile(const QString& strTitle, const QString& strFolder,
                                                const QString& strFilter) = 0;

    /// A file to write, which the person agreed to replace where it stands already; strName is proposed for
    /// it.
    virtual std::optional<QString> PickSaveFile(const QString& /*strTitle*/, const QString& /*strName*/) {
        return std::nullopt;
    }

    /// A folder, under a prompt.
    virtual std::optional<QString> PickFolder(const QString& strPrompt, const QString& strFolder) = 0;

    /// A folder to write to, which is made where it does not stand yet; strName is proposed for it. Here, who
    /// can make none picks one that stands.
    virtual std::optional<QString> PickNewFolder(const QString& strPrompt, const QString& strFolder,
                                                 const QString&) {
        return PickFolder(strPrompt, strFolder);
    }

    /// The four forms of boxes that the program knows.
    BoxAnswer Question(const QString& strText, BoxDefault byEnter = BoxDefault::First) {
        return Ask(strText, QStringLiteral("提示"), BoxButtons::OkCancel, BoxIcon::Question, byEnter);
    }
    void Notice(const QString& strText) {
        Ask(strText, QStringLiteral("提示"), BoxButtons::Ok, BoxIcon::Information);
    }
    void Warn(const QString& strText) {
        Ask(strText, QStringLiteral("警告"), BoxButtons::Ok, BoxIcon::Warning);
    }
    void Error(const QString& strText) {
        Ask(strText, QStringLiteral("错误"), BoxButtons::Ok, BoxIcon::Stop);
    }
};

} // namespace Torvane::Dialog::MFC
