#include "editor/Replacements.h"
#include "tests/support/Testing.h"

#include <random>

using namespace ResourceText;

namespace {

/// The rule itself, to the letter: one change after the other, each over the whole text.
QString OneByOne(QString strText, const QList<Replacement>& replacements) {
    for (const Replacement& replacement : replacements)
        strText.replace(replacement.strFrom, replacement.strTo);
    return strText;
}

class CRandomTexts {
public:
    explicit CRandomTexts(unsigned nSeed) : m_random(nSeed) {}
    std::size_t Below(std::size_t nEnd) { return m_random() % nEnd; }
    QString Of(const QStringList& parts, std::size_t nMost) {
        QString strText;
        for (std::size_t n = Below(nMost + 1); n > 0; --n)
            strText += parts.at(static_cast<qsizetype>(Below(static_cast<std::size_t>(parts.size()))));
        return strText;
    }

private:
    std::mt19937 m_random;
};

void ExpectTheRule(CRandomTexts& random, const QStringList& from, const QStringList& to,
                   const QStringList& text) {
    QList<Replacement> replacements;
    for (std::size_t n = random.Below(8); n > 0; --n) {
        const QString strFrom = random.Of(from, 4);
        if (!strFrom.isEmpty())
            replacements.append({strFrom, random.Of(to, 3)});
    }
    const QString strText = random.Of(text, 40);
    QString strChanges;
    for (const Replacement& r : std::as_const(replacements))
        strChanges += r.strFrom + u" -> " + r.strTo + u'\n';
    const QList<bool> occurring = FindOccurring(strText, replacements);
    for (qsizetype n = 0; n < replacements.size(); ++n)
        ASSERT_EQ(occurring.at(n), strText.contains(replacements.at(n).strFrom)) << strText << strChanges;
    ASSERT_EQ(ApplyReplacements(strText, replacements), OneByOne(strText, replacements)) << strText << '\n'
                                                                                         << strChanges;
}

TEST(Replacements, EqualTheRuleHoweverTheyTouchEachOther) {
    CRandomTexts random(11);
    // Few characters, so that references overlap, hold each other, and arise from what others write.
    const QStringList letters = {u"a"_s, u"b"_s, u":"_s, u"://"_s, u"程"_s};
    const QStringList withoutColon = {u"a"_s, u"b"_s, u"程"_s};
    const QStringList text = letters + QStringList{u"\""_s, u"<"_s, u"a:b"_s, u" "_s};
    for (int nRun = 0; nRun < 20'000 && !testing::Test::HasFatalFailure(); ++nRun)
        ExpectTheRule(random, letters, nRun % 2 ? letters : withoutColon, text);
    // As they stand in pages: one address the beginning of the other, glued together, within a target.
    const QStringList references = {u"file:///Z:/a"_s, u"/b.gif"_s,         u"#x"_s,         u"?y"_s,
                                    u"http://h/a"_s,   u"http://h/a.gif"_s, u"file:///Z:/"_s};
    const QStringList targets = {u"res/1[2].gif"_s, u"../n1/a"_s, u"#"_s, u"file:///Z:/a"_s, u"/b.gif"_s};
    const QStringList page = references + targets + QStringList{u"<img src=\""_s, u"\">"_s, u"文\n"_s};
    for (int nRun = 0; nRun < 20'000 && !testing::Test::HasFatalFailure(); ++nRun)
        ExpectTheRule(random, references, targets, page);
}

} // namespace
