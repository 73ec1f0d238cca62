#include "tests/journey/Journey.h"

#include "foundation/CodePage.h"
#include "tests/journey/Steps.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QThread>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

const QString c_strCourse = u"计算机网络"_s;
const QString c_strPassword = u"wangluo8"_s;
constexpr qint32 c_nCourse = 5;
const QString c_strRetry = u"retry"_s;
const QString c_strCancel = u"cancel"_s;
const QString c_strGiveUp = u"statusCancel"_s;
const QString c_strStatus = u"statusWindow"_s;
const QString c_strLostText = u"这些字不能丢。"_s;

/// A teacher whose server has trouble. The server's process and state come from the caller by the
/// environment.
class CPatient : public CSteps {
public:
    using CSteps::Close;
    using CSteps::CSteps;

    void NoServer() {
        Start();
        PressInBox(c_strRetry);
        PressInBox(c_strCancel);
        StandsEmpty();
        OpenFromFile();
        PressInBox(c_strRetry);
        PressInBox(c_strCancel);
        StandsEmpty();
    }

    void HangingServer() {
        Signal(SIGSTOP);
        Start();
        GiveUp(u"Escape"_s);
        StandsEmpty();
        OpenFromFile();
        GiveUp(QString());
        StandsEmpty();
        Signal(SIGCONT);
        OpenFromFile();
        Login();
        Signal(SIGSTOP);
        Command(32855);
        GiveUp(u"Escape"_s);
        AnswerBox(u"验证课程失败！"_s, u"ok"_s);
        Close();
        GiveUp(QString());
        Signal(SIGCONT);
    }

    void Garbage() {
        Start();
        PressInBox(c_strCancel);
        StandsEmpty();
        OpenFromFile();
        PressInBox(c_strCancel);
        StandsEmpty();
        Command(32854);
        m_robot.WaitForWidget(u"address"_s);
        m_robot.Press(u"Return"_s);
        PressInBox(u"ok"_s);
        m_robot.Press(u"Escape"_s);
        StandsEmpty();
    }

    void WrongPassword() {
        OpenRecent();
        for (const QString& strWrong : {u"one"_s, u"two"_s, u"three"_s}) {
            m_robot.Fill(u"password"_s, strWrong);
            m_robot.Press(u"Return"_s);
            AnswerBox(u"密码错误，请您重新输入!"_s, u"ok"_s);
        }
        m_robot.WaitForWidget(u"password"_s);
        m_robot.Shot(u"after-three"_s);
        Login();
    }

    void InitialPassword() {
        Sql(u"UPDATE Course SET InitialPassword = 1 WHERE Id = %1"_s.arg(c_nCourse));
        OpenRecent();
        m_robot.Fill(u"password"_s, c_strPassword);
        m_robot.Press(u"Return"_s);
        PressInBox(u"ok"_s);
        m_robot.Fill(u"old"_s, c_strPassword);
        m_robot.Fill(u"new"_s, u"short"_s);
        m_robot.Fill(u"confirm"_s, u"short"_s);
        m_robot.Press(u"Return"_s);
        AnswerBox(u"为了保障您的课程的安全，密码不得低于6位!"_s, u"ok"_s);
        m_robot.Fill(u"new"_s, u"wangluo9"_s);
        m_robot.Press(u"Return"_s);
        AnswerBox(u"两次输入密码不一致，请您重新输入！"_s, u"ok"_s);
        m_robot.Fill(u"confirm"_s, u"wangluo9"_s);
        m_robot.Press(u"Return"_s);
        AnswerBox(u"密码已修改，请您牢记！"_s, u"ok"_s);
        WaitForOpenCourse();
    }

    /// Keeps the course open until the caller says that it is enough.
    void Hold() {
        OpenRecent();
        Login();
        Mark(u"held"_s);
        m_robot.WaitFor(
            "the other person", [&] { return QFile::exists(Flag(u"enough"_s)); }, 120);
    }

    void SecondPerson() {
        OpenRecent();
        m_robot.Fill(u"password"_s, c_strPassword);
        m_robot.Press(u"Return"_s);
        PressInBox(c_strRetry);
        PressInBox(c_strCancel);
        StandsEmpty();
        Mark(u"enough"_s);
        QThread::sleep(6);
        // The password was proven a moment ago, and the course is free now.
        OpenFromFile();
        WaitForOpenCourse();
    }

    void Renamed() {
        Sql(u"UPDATE Course SET Name = '%1（二）' WHERE Id = %2"_s.arg(c_strCourse).arg(c_nCourse));
        OpenRecent();
        Login();
        const auto strTitle = Robot::Ask<QString>([] { return Robot::Find(c_strFrame)->windowTitle(); });
        if (!strTitle.contains(u"（二）"_s))
            throw Robot::Failure("the window has the old name: " + strTitle.toStdString());
        m_robot.Shot(u"renamed"_s);
    }

    /// The server falls silent while a page is written: what is typed on, and the saving, come behind.
    void SilentWhileEditing() {
        EditFirstLeaf();
        Signal(SIGSTOP);
        m_robot.WaitFor(
            "the session check", [] { return Robot::Find(c_strGiveUp, c_strStatus); }, 200);
        m_robot.Shot(u"waiting"_s);
        m_robot.Type(c_strLostText);
        m_robot.Press(u"ctrl+s"_s);
        QThread::msleep(500);
        m_robot.Press(u"Escape"_s);
        PressInBox(c_strRetry);
        Signal(SIGCONT);
        m_robot.WaitFor("the page to be saved", [] { return SavedText().contains(c_strLostText); });
        m_robot.Shot(u"saved"_s);
    }

    void LostSession() {
        EditFirstLeaf();
        m_robot.Type(c_strLostText);
        Sql(u"UPDATE Client SET Seen = 1"_s);
        m_robot.WaitFor(
            "the session check", [] { return ShownBox(); }, 200);
        PressInBox(u"ok"_s);
        m_robot.WaitFor("the save question", [] {
            const QMessageBox* pBox = ShownBox();
            return pBox && pBox->buttons().size() == 2;
        });
        PressInBox(u"yes"_s);
        StandsEmpty();
    }

    void ServerAwayAtClose() {
        OpenRecent();
        Login();
        Signal(SIGTERM);
    }

private:
    void Start() {
        m_robot.WaitForWidget(u"ok"_s, c_strStartup);
        m_robot.Click(u"ok"_s, c_strStartup);
    }

    void OpenRecent() {
        m_robot.WaitForWidget(u"tabs"_s, c_strStartup);
        m_robot.Press(u"ctrl+Tab"_s);
        m_robot.Click(u"ok"_s, c_strStartup);
    }

    void OpenFromFile() {
        Command(32778);
        m_robot.Fill(u"fileNameEdit"_s, qEnvironmentVariable("VOREL_JOURNEY_COURSE"));
        m_robot.Press(u"Return"_s);
    }

    void Login() {
        m_robot.Fill(u"password"_s, c_strPassword);
        m_robot.Press(u"Return"_s);
        WaitForOpenCourse();
    }

    void PressInBox(const QString& strButton) {
        m_robot.WaitForWidget(strButton, u"messageBox"_s);
        m_robot.Shot(u"box"_s);
        m_robot.Click(strButton, u"messageBox"_s);
        QThread::msleep(300);
    }

    /// Ends a call that never comes back: with the key, or with the button for none.
    void GiveUp(const QString& strKey) {
        m_robot.WaitForWidget(c_strGiveUp, c_strStatus);
        m_robot.Shot(u"waiting"_s);
        if (strKey.isEmpty())
            m_robot.Click(c_strGiveUp, c_strStatus);
        else
            m_robot.Press(strKey);
        m_robot.WaitFor("the call to end", [] { return !Robot::Find(c_strGiveUp, c_strStatus); });
    }

    void StandsEmpty() {
        m_robot.WaitFor("the main window without a course", [] {
            const QWidget* pFrame = Robot::Find(c_strFrame);
            return pFrame && pFrame->windowTitle() == u"Vorel"_s && !QApplication::activeModalWidget();
        });
    }

    void SelectFirstLeaf() {
        for (QString strNext = RootText(); !strNext.isEmpty();) {
            ClickLine(c_strTree, strNext);
            m_robot.Press(u"Right"_s);
            strNext = Robot::Ask<QString>([&] {
                const QModelIndex line = Line(c_strTree, strNext);
                return line.model()->index(0, 0, line).data().toString();
            });
        }
        m_robot.WaitForWidget(u"tool_32815"_s);
    }

    void EditFirstLeaf() {
        OpenRecent();
        Login();
        SelectFirstLeaf();
        m_robot.Click(u"tool_32815"_s);
        m_robot.WaitForWidget(u"button_32779"_s);
        m_robot.Click(u"design"_s);
        m_robot.Press(u"ctrl+End"_s);
    }

    /// All pages of the course on the disk.
    static QString SavedText() {
        QString strText;
        QDirIterator pages(QFileInfo(qEnvironmentVariable("VOREL_JOURNEY_COURSE")).path(), {u"*.htm*"_s},
                           QDir::Files, QDirIterator::Subdirectories);
        while (pages.hasNext()) {
            QFile page(pages.next());
            if (page.open(QIODevice::ReadOnly))
                strText += CodePage::Decode(page.readAll());
        }
        return strText;
    }

    static void Signal(int nSignal) {
        ::kill(qEnvironmentVariableIntValue("VOREL_JOURNEY_SERVER"), nSignal);
        QThread::msleep(200);
    }

    static void Sql(const QString& strStatement) {
        const QString strStore = qEnvironmentVariable("VOREL_JOURNEY_STATE") + u"/courses.db"_s;
        if (QProcess::execute(u"sqlite3"_s, {strStore, u".timeout 2000"_s, strStatement}) != 0)
            throw Robot::Failure("the server's state can't be changed");
    }

    QString Flag(const QString& strName) const { return QDir(m_strFolder).filePath(u"../"_s + strName); }

    void Mark(const QString& strName) const {
        QFile file(Flag(strName));
        if (!file.open(QIODevice::WriteOnly))
            throw Robot::Failure("no place for a mark");
    }
};

const struct {
    QStringView strName;
    void (CPatient::*pRun)();
} c_trials[]{
    {u"no-server", &CPatient::NoServer},
    {u"hanging-server", &CPatient::HangingServer},
    {u"garbage", &CPatient::Garbage},
    {u"wrong-password", &CPatient::WrongPassword},
    {u"initial-password", &CPatient::InitialPassword},
    {u"hold", &CPatient::Hold},
    {u"second-person", &CPatient::SecondPerson},
    {u"renamed", &CPatient::Renamed},
    {u"silent-while-editing", &CPatient::SilentWhileEditing},
    {u"lost-session", &CPatient::LostSession},
    {u"server-away-at-close", &CPatient::ServerAwayAtClose},
};

} // namespace

void RunTrial(const QString& strFolder, const QString& strName) {
    CPatient patient(strFolder);
    for (const auto& trial : c_trials) {
        if (trial.strName != strName)
            continue;
        (patient.*trial.pRun)();
        // This one has closed the window already.
        if (strName != u"hanging-server"_s)
            patient.Close();
        return;
    }
    throw Robot::Failure("no such trial");
}
