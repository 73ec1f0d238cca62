#pragma once

#include <QPoint>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>
#include <stdexcept>
#include <utility>

class QObject;
class QWidget;

/// A hand at the mouse and keyboard of a running program. It lives on a thread of its own and sends its input
/// through the display, so that every click and key goes the way a person's does; it looks at widgets by
/// their object names, on the interface thread. Waiting is for a condition, never for a time. A wait that
/// ends without its condition throws Robot::Failure.
class Robot {
public:
    struct Failure : std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    explicit Robot(QString strShotFolder);

    /// Runs on the interface thread and answers its result.
    static void OnGui(const std::function<void()>& work);
    template <class T>
    static T Ask(const std::function<T()>& work) {
        T result{};
        OnGui([&] { result = work(); });
        return result;
    }

    void WaitFor(const char* pWhat, const std::function<bool()>& condition, int nSeconds = 30);

    /// Waits until a visible, enabled widget of this name can be found (below the named window, if one is
    /// given) and nothing in front of it takes its input.
    void WaitForWidget(const QString& strName, const QString& strWindow = QString());
    /// Clicks the middle of the widget, or a place in it.
    void Click(const QString& strName, const QString& strWindow = QString());
    void ClickAt(const QString& strName, const std::function<QRect(QWidget*)>& place, int nButton = 1,
                 const QString& strWindow = QString());
    /// Presses the mouse on one place of a widget and takes it to another, where it rests until LetGo.
    void Drag(const QString& strName, const std::function<QRect(QWidget*)>& from,
              const std::function<QRect(QWidget*)>& to);
    static void LetGo();
    /// Clicks the entry of the open menu.
    void ClickMenuEntry(const QString& strText);

    /// Presses a key with modifiers, as X names them: "Return", "ctrl+s".
    void Press(const QString& strKeys);
    /// Clicks into a field and waits until it has the focus.
    void ClickInto(const QString& strName, const QString& strWindow = QString());
    /// Puts the text into a line edit in place of what it holds, and waits until it stands there.
    void Fill(const QString& strName, const QString& strText, const QString& strWindow = QString());
    /// Types small letters and digits on the keyboard; any other text is committed to whatever has the focus,
    /// as an input method does: first composing, then committing.
    void Type(const QString& strText);

    /// A picture of the whole screen, "<number>-<name>.png".
    void Shot(const QString& strName);

    /// For use inside OnGui.
    static QWidget* Find(const QString& strName, const QString& strWindow = QString());

private:
    /// Gives a line of commands to xdotool.
    static void Send(const QStringList& input);
    static void SendClick(const QPoint& point, int nButton);
    QPoint Settle(const QString& strName, const QString& strWindow,
                  const std::function<QRect(QWidget*)>& place);
    QString m_strShotFolder;
    int m_nShot = 0;
};
