// The references of a large page are planned and rewritten, beside one pass of perl with one combined
// pattern, which is told the plan, over the same text. Both results must equal the rule itself: one reference
// after the other over the whole text. Usage: bench_resource_text FOLDER [megabytes] [references]
#include "bench/Rounds.h"
#include "editor/ResourceText.h"
#include "platform/base/NativePath.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace ResourceText;

namespace {

constexpr double c_dLimit = 1.0;

void MustHold(bool bHolds, const char* szWhat) {
    if (!bHolds) {
        std::fprintf(stderr, "failed: %s\n", szWhat);
        std::exit(2);
    }
}

void Write(const QString& strPath, const QByteArray& bytes) {
    QFile file(strPath);
    MustHold(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "write");
}

QByteArray Read(const QString& strPath) {
    QFile file(strPath);
    MustHold(file.open(QIODevice::ReadOnly), "read");
    return file.readAll();
}

/// Two thirds are pictures elsewhere on the disk, the others links to sections. Some addresses begin with
/// another one.
References MakeReferences(const QString& strFolder, int nReferences) {
    References references;
    for (int n = 0; n < nReferences; ++n) {
        if (n % 3 != 0) {
            const QString strPlace = u"%1/图片/第%2章/"_s.arg(strFolder).arg(n / 50);
            const QString strName = u"实验 照片[%1].jpg"_s.arg(n);
            QDir().mkpath(strPlace);
            Write(strPlace + strName, "jpg");
            references.Images.append(u"file:///Z:"_s + strPlace + u"实验%20照片%5B"_s + QString::number(n) +
                                     u"%5D.jpg"_s);
        } else {
            references.Anchors.append(
                u"file:///Z:%1/课/NodeResource/N%2/Content.htm#s%3"_s.arg(strFolder).arg(n / 5).arg(n));
        }
    }
    return references;
}

/// As a teacher's page is: markup with styles, text, now and then a reference, and links that stay.
QString MakePage(const QList<Replacement>& replacements, qsizetype nBytes) {
    QString strPage;
    const qsizetype nPart = nBytes / replacements.size();
    for (qsizetype n = 0; n < replacements.size(); ++n) {
        const bool bPicture = replacements.at(n).strTo.startsWith(u"res/"_s);
        const QString strReference =
            (bPicture ? u"<img src=\"%1\">"_s : u"<a href=\"%1\">"_s).arg(replacements.at(n).strFrom);
        QString strPart =
            u"<p>"_s + strReference + u"</p>\n<a href=\"http://www.example.edu.cn/%1\">参考</a>\n"_s.arg(n);
        while (strPart.toUtf8().size() < nPart)
            strPart +=
                u"<p style=\"margin:0\"><span lang=\"EN-US\">F = m a</span>，力等于质量与加速度的乘积。</p>\n"_s;
        strPage += strPart;
    }
    return strPage;
}

const char* const c_szPerl =
    R"(BEGIN { open(my $f, "<", shift) or die; while (<$f>) { chomp; my ($a, $b) = split /\t/; $h{$a} = $b }
my $all = join "|", map { quotemeta } sort { length $b <=> length $a } keys %h; $re = qr/($all)/ } s/$re/$h{$1}/g)";

} // namespace

int main(int argc, char** argv) {
    MustHold(argc > 1, "usage: bench_resource_text FOLDER [megabytes] [references]");
    const QTemporaryDir folder(QString::fromLocal8Bit(argv[1]) + u"/vorel-bench-XXXXXX"_s);
    MustHold(folder.isValid(), "the work folder");
    const qsizetype nBytes = (argc > 2 ? std::atoi(argv[2]) : 5) * 1024 * 1024;
    const References references = MakeReferences(folder.path(), argc > 3 ? std::atoi(argv[3]) : 2000);
    const QString strNodes = Platform::FromNative(folder.path()) + u"\\课\\NodeResource\\"_s;
    const PageFolders folders{strNodes + u"N1\\res\\"_s, strNodes};
    QList<ResourceCopy> copies;
    const QList<Replacement> replacements = PlanReplacements(references, folders, copies);
    MustHold(replacements.size() == references.Images.size() + references.Anchors.size(), "the plan");
    const QString strPage = MakePage(replacements, nBytes);

    const QString strIn = folder.filePath(u"page.htm"_s), strOut = folder.filePath(u"out.htm"_s);
    const QString strList = folder.filePath(u"list.txt"_s);
    Write(strIn, strPage.toUtf8());
    QByteArray list;
    for (const Replacement& r : replacements)
        list += (r.strFrom + u'\t' + r.strTo + u'\n').toUtf8();
    Write(strList, list);

    QString strOurs;
    const bool bKept =
        Run({"rewriting a page", c_dLimit,
             [&] {
                 // The plan is made anew, with names of its own, and the first one carried out.
                 QList<ResourceCopy> planned;
                 MustHold(PlanReplacements(references, folders, planned).size() == replacements.size(),
                          "the plan");
                 strOurs = ApplyReplacements(strPage, replacements);
             },
             [&] {
                 QProcess perl;
                 perl.setStandardOutputFile(strOut);
                 perl.start(u"perl"_s, {u"-pe"_s, QString::fromLatin1(c_szPerl), strList, strIn});
                 MustHold(perl.waitForFinished(-1) && perl.exitCode() == 0, "perl");
             }});
    QString strRule = strPage;
    for (const Replacement& r : replacements)
        strRule.replace(r.strFrom, r.strTo);
    MustHold(strRule != strPage && strOurs == strRule, "equal to the rule");
    MustHold(Read(strOut) == strRule.toUtf8(), "perl's result equal to the rule");
    return bKept ? 0 : 1;
}
