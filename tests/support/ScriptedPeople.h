#pragma once

#include "platform/base/People.h"

#include <gtest/gtest.h>

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
    using BoxIcon = Torvane::Dialog::MFC::BoxIcon;

    struct Box {
        QString strText;
        QString strTitle;
        BoxButtons Buttons;
        BoxIcon Icon;
    };

    ~CScriptedPeople() override {
        for (const auto& expected : m_expected)
            ADD_FAILURE() << "the box never came: " << expected.strText.toStdString();
    }

    /// The next box shows exactly this text, and gets this answer.
    void Expect(const QString& strText, BoxAnswer answer = BoxAnswer::Ok) {
        m_expected.push_back({strText, answer});
    }

    std::vector<Box> Boxes;
    QStringList Statuses;
    std::deque<std::optional<QString>> Files;
    std::deque<std::optional<QString>> Folders;

    BoxAnswer Ask(const QString& strText, const QString& strTitle, BoxButtons buttons,
                  BoxIcon icon) override {
        Boxes.push_back({strText, strTitle, buttons, icon});
        if (m_expected.empty()) {
            ADD_FAILURE() << "an unexpected box: " << strText.toStdString();
            return BoxAnswer::Cancel;
        }
        const Answer next = m_expected.front();
        m_expected.pop_front();
        EXPECT_EQ(next.strText.toStdString(), strText.toStdString());
        return next.answer;
    }

    std::unique_ptr<Torvane::Dialog::MFC::CShowStatusDlg> OpenStatus() override {
        class CStatus : public Torvane::Dialog::MFC::CShowStatusDlg {
        public:
            explicit CStatus(QStringList& list) : m_list(list) {}
            void ShowStatus(const QString& strText) override { m_list.append(strText); }
            void ShowProgress(qint64, qint64) override {}

        private:
            QStringList& m_list;
        };
        return std::make_unique<CStatus>(Statuses);
    }

    void KeepPainting() override {}

    std::optional<QString> PickOpenFile(const QString&, const QString&, const QString&) override {
        return NextAnswer(Files);
    }
    std::optional<QString> PickFolder(const QString&, const QString&) override { return NextAnswer(Folders); }

private:
    struct Answer {
        QString strText;
        BoxAnswer answer;
    };
    std::deque<Answer> m_expected;
};
