#include "tests/journey/Journey.h"

#include "foundation/CodePage.h"
#include "tests/journey/Steps.h"

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QThread>

#include <csignal>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString c_strPassword = u"wangluo8"_s;
const QString c_strRetry = u"retry"_s;
const QString c_strCancel = u"cancel"_s;
const QString c_strGiveUp = u"statusCancel"_s;
const QString c_strStatus = u"statusWindow"_s;
const QString c_strLostText = u"这些字不能丢。"_s;
const QString c_strCompile = u"tool_32855"_s;
const QString c_strTyped = u"typed"_s;

/// A teacher whose server has trouble. The server's process and state come from the caller by the
/// environment.
class CPatient : public CSteps {
public:
    using CSteps::Close;
    using CSteps::CSteps;

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
        Login(c_strPassword);
        Signal(SIGSTOP);
        Command(32855);
        GiveUp(u"Escape"_s);
        AnswerBox(u"验证课程失败！"_s, u"ok"_s);
        Close();
        GiveUp(QString());
        Signal(SIGCONT);
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
        m_robot.WaitFor("the page to be saved",
                        [] { return TextOf(u"NodeResource"_s).contains(c_strLostText); });
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
        Login(c_strPassword);
        Signal(SIGTERM);
    }

    /// What a power cut does: the program goes in the middle of editing.
    void KilledWhileEditing() {
        EditFirstLeaf();
        m_robot.Type(c_strLostText);
        m_robot.WaitFor("the text to be kept", [] { return TextOf(u"Unsaved"_s).contains(c_strLostText); });
        m_robot.Shot(u"typed"_s);
        QFile part(m_strFolder + u"/part.txt"_s);
        if (part.open(QIODevice::WriteOnly) && part.write("ok") == 2) {
            part.close();
            ::kill(::getpid(), SIGKILL);
        }
    }

    /// She clicks and types while the compiler runs, as if the window heard her; the second time the
    /// store is gone when the compiler is done.
    void SlowCompiler() {
        EditFirstLeaf();
        Compile(QString());
        m_robot.Click(c_strCompile);
        ClickLine(c_strTree, RootText());
        m_robot.Type(u"gone"_s);
        m_robot.Type(c_strLostText);
        m_robot.Press(u"ctrl+s"_s);
        m_robot.Press(u"alt+F4"_s);
        m_robot.Shot(u"compiling"_s);
        EndCompiler();
        m_robot.Type(c_strTyped);
        m_robot.Press(u"ctrl+s"_s);
        m_robot.WaitFor("the page to be saved",
                        [] { return TextOf(u"NodeResource"_s).contains(c_strTyped); });
        m_robot.Shot(u"compiled"_s);
        const QString strPages = TextOf(u"NodeResource"_s);
        if (strPages.contains(u"gone"_s) || strPages.contains(c_strLostText))
            throw Robot::Failure("what was typed came when the compiler was done");
        if (Starts() != 1)
            throw Robot::Failure("the compiler was started again");

        m_robot.Type(c_strLostText);
        Compile(u"mv \"${1%/*}/Data/DataBase/VorelCourse.mdb\" \"$here/\""_s);
        EndCompiler();
        PressInBox(u"ok"_s);
        PressInBox(u"yes"_s);
        StandsEmpty();
        m_robot.Shot(u"closed"_s);
        if (!TextOf(u"NodeResource"_s).contains(c_strLostText))
            throw Robot::Failure("the page was not saved");
    }

    /// The next start after it.
    void KeptText() {
        // The server still knows the one that was killed.
        OpenRecent();
        PressInBox(u"yes"_s);
        m_robot.WaitForWidget(u"design"_s);
        WaitForOpenCourse();
        m_robot.Shot(u"given-back"_s);
        if (TextOf(u"NodeResource"_s).contains(c_strLostText))
            throw Robot::Failure("the text was written over the page unasked");
        m_robot.Press(u"ctrl+s"_s);
        m_robot.WaitFor("the page to be saved",
                        [] { return TextOf(u"NodeResource"_s).contains(c_strLostText); });
        m_robot.WaitFor("the kept text to go", [] { return TextOf(u"Unsaved"_s).isEmpty(); });
        m_robot.Shot(u"saved"_s);
    }

private:
    /// Puts a compiler in place of the real one that ends when it is told to, has it started by the button,
    /// and waits until it runs.
    void Compile(const QString& strAtEnd) {
        QFile::remove(m_strFolder + u"/go"_s);
        const int nStarts = Starts();
        const QString strProgram = QCoreApplication::applicationDirPath() + u"/VorelCompiler"_s;
        QFile::remove(strProgram);
        QFile program(strProgram);
        const QString strText =
            u"#!/bin/sh\nhere='%1'\necho >>\"$here/starts\"\n"
            "while [ ! -e \"$here/go\" ]; do sleep 0.1; done\n%2\n"_s.arg(m_strFolder, strAtEnd);
        if (!program.open(QIODevice::WriteOnly) || program.write(strText.toUtf8()) < 0)
            throw Robot::Failure("the compiler can't be replaced");
        program.setPermissions(program.permissions() | QFile::ExeOwner);
        program.close();
        m_robot.Click(c_strCompile);
        m_robot.WaitFor("the compiler", [&] { return Starts() > nStarts; });
    }

    void EndCompiler() {
        QFile go(m_strFolder + u"/go"_s);
        if (!go.open(QIODevice::WriteOnly))
            throw Robot::Failure("the compiler can't be told");
        m_robot.WaitFor("the compiler's end", [] { return !Robot::Find(c_strStatus); });
    }

    int Starts() const { return int(QFileInfo(m_strFolder + u"/starts"_s).size()); }

    void Start() {
        m_robot.WaitForWidget(u"ok"_s, c_strStartup);
        m_robot.Click(u"ok"_s, c_strStartup);
    }

    void OpenFromFile() {
        Command(32778);
        m_robot.Fill(u"fileNameEdit"_s, qEnvironmentVariable("VOREL_JOURNEY_COURSE"));
        m_robot.Press(u"Return"_s);
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

    void EditFirstLeaf() {
        OpenRecent();
        Login(c_strPassword);
        SelectFirstLeaf();
        EnterEditor();
    }

    /// All pages of the course on the disk that lie in a folder of this name.
    static QString TextOf(const QString& strFolder) {
        QString strText;
        QDirIterator pages(QFileInfo(qEnvironmentVariable("VOREL_JOURNEY_COURSE")).path(), {u"*.htm*"_s},
                           QDir::Files, QDirIterator::Subdirectories);
        while (pages.hasNext()) {
            QFile page(pages.next());
            if (page.fileName().contains(strFolder) && page.open(QIODevice::ReadOnly))
                strText += Text(page.readAll());
        }
        return strText;
    }

    static QString Text(const QByteArray& bytes) {
        return bytes.contains("charset=utf-8") ? QString::fromUtf8(bytes) : CodePage::Decode(bytes);
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
};

const struct {
    QStringView strName;
    void (CPatient::*pRun)();
} c_trials[]{
    {u"hanging-server", &CPatient::HangingServer},
    {u"silent-while-editing", &CPatient::SilentWhileEditing},
    {u"lost-session", &CPatient::LostSession},
    {u"server-away-at-close", &CPatient::ServerAwayAtClose},
    {u"killed-while-editing", &CPatient::KilledWhileEditing},
    {u"kept-text", &CPatient::KeptText},
    {u"slow-compiler", &CPatient::SlowCompiler},
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
