#include "tests/journey/ContentSteps.h"
#include "tests/journey/Journey.h"

#include <QAbstractButton>
#include <QLabel>
#include <QListView>

using namespace Qt::StringLiterals;

namespace {

/// The text of a label that shows; empty for none. On the interface thread.
QString TextOf(const QString& strLabel) {
    const auto* pLabel = qobject_cast<QLabel*>(Robot::Find(strLabel));
    return pLabel ? pLabel->text() : QString();
}

/// A lecture is recorded into a new node and looked at.
class CLecturer : public CContentSteps {
public:
    using CContentSteps::CContentSteps;

    void Run() {
        OpenCourse();
        Make({u"授课录像"_s, 6, {}});
        m_robot.Click(u"download"_s);
        WaitForSlide(0);
        m_robot.Shot(u"preview-slide-1"_s);
        WaitForSlide(1);
        m_robot.Shot(u"preview-slide-2"_s);
        WaitForSlide(2);
        m_robot.Shot(u"preview-slide-3"_s);
        // By the outline back to a slide's beginning.
        ClickLine(u"outline"_s, Robot::Ask<QString>([] {
                      return qobject_cast<QListView*>(Robot::Find(u"outline"_s))
                          ->model()
                          ->index(1, 0)
                          .data()
                          .toString();
                  }));
        m_robot.WaitFor("the earlier slide", [] { return Robot::Find(u"outline"_s) && Row() == 1; });
        WaitForSlide(2);
        m_robot.Shot(u"preview-again"_s);
        m_robot.Press(u"alt+u"_s);
        const QString strTime = Robot::Ask<QString>([] { return TextOf(u"status"_s); });
        Note(u"status"_s, strTime);
        m_robot.Shot(u"preview-paused"_s);
        ClickLine(c_strTree, RootText());
        Close();
    }

private:
    static int Row() { return qobject_cast<QListView*>(Robot::Find(u"outline"_s))->currentIndex().row(); }

    void WaitForSlide(int nEntry) {
        m_robot.WaitFor("the entry of the slide", [nEntry] {
            return Robot::Find(u"outline"_s) && Row() == nEntry && TextOf(u"status"_s).startsWith(u' ');
        });
    }
};

} // namespace

void RecordLecture(const QString& strFolder) {
    CLecturer(strFolder, qEnvironmentVariable("VOREL_JOURNEY_MATERIAL")).Run();
}

void RecordInWindow(const QString& strFolder) {
    const QString strWindow = u"CRecorderWindow"_s;
    const QString strMaterial = qEnvironmentVariable("VOREL_JOURNEY_LECTURE");
    Robot robot(strFolder + u"/recorder"_s);
    robot.WaitForWidget(u"presentation"_s, strWindow);
    robot.Shot(u"setup"_s);
    if (strMaterial.isEmpty()) {
        robot.Press(u"Escape"_s);
        return;
    }
    robot.Fill(u"presentation"_s, strMaterial + u"/讲稿.ppt"_s, strWindow);
    robot.Press(u"alt+v"_s);
    robot.Press(u"End"_s);
    robot.Fill(u"film"_s, strMaterial + u"/课 录.mp4"_s, strWindow);
    robot.Shot(u"filled"_s);
    robot.Press(u"Return"_s);
    for (const QString& strTime : {u"0:00:03 /"_s, u"0:00:06 /"_s, u"0:00:09 /"_s}) {
        robot.WaitFor(
            "the film", [&] { return TextOf(u"time"_s).contains(strTime); }, 60);
        robot.Shot(u"recording"_s);
        robot.Press(strTime.contains(u'9') ? u"Prior"_s : u"Next"_s);
    }
    robot.WaitFor(
        "the lecture",
        [] {
            const auto* pClose = qobject_cast<QAbstractButton*>(Robot::Find(u"end"_s));
            return pClose && pClose->text() == u"关闭(&C)"_s;
        },
        60);
    robot.Shot(u"done"_s);
    robot.Press(u"Return"_s);
}
