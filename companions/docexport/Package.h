#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>

struct archive;

/// Word documents as the packages that they are: ZIP archives of parts. Paths are native.
namespace Package {

struct Part {
    QByteArray Name;
    QByteArray Bytes;
};

struct ArchiveCloser {
    void operator()(archive* p) const;
};

/// A package that is written, a part at a time. All throw Torvane::CRunException with a message.
class CWriter {
public:
    explicit CWriter(const QString& strPath);
    void Add(const Part& part);
    /// A part that is a file (native path).
    void AddFile(const QByteArray& name, const QString& strFile);
    /// Without it the package isn't whole.
    void Close();

private:
    void Begin(const QByteArray& name, qint64 nSize);
    void Take(const QByteArray& bytes);
    void Check(int nResult);

    QString m_strPath;
    std::unique_ptr<archive, ArchiveCloser> m_out;
};

/// A package that is read, a part at a time.
class CReader {
public:
    explicit CReader(const QString& strPath);
    /// Goes to the next part; false at the end.
    bool Next();
    const QByteArray& Name() const { return m_name; }
    /// The next block of the part; empty at its end.
    QByteArray Block();
    /// What is left of the part.
    QByteArray Rest();
    /// Whether all was read so far as it should be.
    bool IsGood() const { return m_bGood; }

private:
    std::unique_ptr<archive, ArchiveCloser> m_in;
    QByteArray m_name;
    bool m_bGood = false;
};

/// Writes a package. Throws Torvane::CRunException with a message.
void Write(const QString& strPath, const QList<Part>& parts);

/// One part of a package; empty when the package has no such part, or can't be read to its end.
QByteArray Read(const QString& strPath, const QByteArray& name);

/// Reads one part block by block. False when there is none, or when it or the package can't be read to its
/// end.
bool ReadBlocks(const QString& strPath, const QByteArray& name,
                const std::function<void(const QByteArray&)>& take);

/// Sees a part block by block, the last of which is empty, and gives what stands in their place.
using Filter = std::function<QByteArray(const QByteArray& block)>;

/// Adds what the filter makes of the reader's part to a file (native path). Throws Torvane::CRunException
/// with a message.
void AppendFiltered(CReader& in, const QString& strPath, const Filter& filter);

/// How a package is changed while it is copied.
struct Change {
    /// A part that may be larger than memory should hold. A file beside the new package is used meanwhile.
    QByteArray LargePart;
    Filter Large;
    /// Sees each of the others.
    std::function<void(Part&)> Other;
};
/// Copies a package, part for part. Throws Torvane::CRunException with a message.
void Rewrite(const QString& strFrom, const QString& strTo, const Change& change);

/// One part of the document below, by the name of its file.
QByteArray ReferencePart(const QString& strName);

/// The document that lends its styles, its sheet of paper, header and footer to the one that is made.
/// strHeader stands above each sheet. Each of the colours, "RRGGBB", is a character style.
QList<Part> ReferenceDocument(const QString& strHeader, const QSet<QByteArray>& colors);

} // namespace Package
