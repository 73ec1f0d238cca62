#pragma once

#include "platform/base/People.h"
#include "tests/support/Testing.h"

#include <deque>

/// Takes the next answer of a script; a dialog that the script does not expect fails the test.
template <typename T>
std::optional<T> NextAnswer(std::deque<std::optional<T>>& answers) {
    if (answers.empty()) {
        ADD_FAILURE() << "an unexpected dialog";
        return std::nullopt;
    }
    const std::optional<T> next = std::move(answers.front());
    answers.pop_front();
    return next;
}

/// A person who answers by a script. Every box that comes is recorded; one that the script does not expect
/// fails the test and is cancelled.
class CScriptedPeople : public Torvane::Dialog::MFC::IPeople {
public:
    using BoxAnswer = Torvane::Dialog::MFC::BoxAnswer;
    using BoxButtons = Torvane::Dialog::MFC::BoxButtons;
    using BoxDefault = Torvane::Dialog::MFC::BoxDefault;
    using BoxIcon = Torvane::Dialog::MFC::BoxIcon;

    struct Box {
        QString strText;
        QString strTitle;
        BoxButtons Buttons;
        BoxIcon Icon;
        BoxDefault ByEnter;
    };

    ~CScriptedPeople() override {
        for (const auto& expected : m_expected)
            ADD_FAILURE() << "the box never came: " << expected.strText.toStdString();
    }

    /// The next box shows exactly this text, and gets this answer.
    void Expect(const QString& strText, BoxAnswer answer = BoxAnswer::Ok) {
        m_expected.push_back({strText, answer, false});
    }

    /// The same where the text goes on with what no script knows.
    void ExpectBeginning(const QString& strText, BoxAnswer answer = BoxAnswer::Ok) {
        m_expected.push_back({strText, answer, true});
    }

    std::vector<Box> Boxes;
    QStringList Statuses;
    std::deque<std::optional<QString>> Files;
    std::deque<std::optional<QString>> Folders;
    /// One for each step that may be given up: whether the person does. Whoever has no more of them waits.
    std::deque<bool> GiveUps;

    BoxAnswer Ask(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon,
                  BoxDefault byEnter) override {
        Boxes.push_back({strText, strTitle, buttons, icon, byEnter});
        if (m_expected.empty()) {
            ADD_FAILURE() << "an unexpected box: " << strText.toStdString();
            return BoxAnswer::Cancel;
        }
        const Answer next = m_expected.front();
        m_expected.pop_front();
        const QString strShown = next.bBeginning ? strText.left(next.strText.size()) : strText;
        EXPECT_EQ(next.strText, strShown);
        return next.answer;
    }

    /// What she answers to a question that comes again and again holds for all that follow.
    bool bForAll = false;
    YesNoAll QueryYesNoAll(const QString& strText) override {
        return {IPeople::QueryYesNoAll(strText).bYes, bForAll};
    }

    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> OpenStatus() override {
        return std::make_unique<CStatus>(*this);
    }
    Torvane::Dialog::MFC::CShowStatusDlg* GetStatus() override {
        return m_open.empty() ? nullptr : m_open.back();
    }

    void KeepPainting() override {}
    /// How often another program was waited for.
    int nInputStops = 0;
    std::unique_ptr<CInputStop> StopInput() override {
        ++nInputStops;
        return nullptr;
    }

    /// From then on a step shows its status.
    std::optional<qint64> Patience;
    qint64 GetPatience() override { return Patience.value_or(IPeople::GetPatience()); }

    std::optional<QString> PickOpenFile(const QString&, const QString&, const QString&) override {
        return NextAnswer(Files);
    }
    std::optional<QString> PickSaveFile(const QString&, const QString&) override { return NextAnswer(Files); }
    std::optional<QString> PickFolder(const QString&, const QString&) override { return NextAnswer(Folders); }

private:
    class CStatus : public Torvane::Dialog::MFC::CShowStatusDlg {
    public:
        explicit CStatus(CScriptedPeople& people) : m_people(people) { people.m_open.push_back(this); }
        ~CStatus() override { std::erase(m_people.m_open, this); }
        void ShowStatus(const QString& strText) override { m_people.Statuses.append(strText); }
        void ShowProgress(qint64, qint64) override {}
        void AllowCancel(bool bAllow) override {
            m_bGivesUp = bAllow && !m_people.GiveUps.empty() && m_people.GiveUps.front();
            if (bAllow && !m_people.GiveUps.empty())
                m_people.GiveUps.pop_front();
        }
        bool KeepWaiting() override { return !m_bGivesUp; }

    private:
        CScriptedPeople& m_people;
        bool m_bGivesUp = false;
    };

    std::vector<CStatus*> m_open;
    struct Answer {
        QString strText;
        BoxAnswer answer;
        bool bBeginning = false;
    };
    std::deque<Answer> m_expected;
};
