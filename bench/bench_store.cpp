// What the store costs above the bare engine: bench_store WORK_FOLDER [NODES].
//
// Both sides do the same from a fresh copy of the seed database: 10,000 times a node is added at the end of
// one parent's children, each as one transaction, and then all are read in order, with their titles as
// QString. The bare side uses SQLite's C interface with the same settings (write-ahead log, full
// synchronisation), the same statements, each prepared once, and enciphers and deciphers with libcrypto and
// converts with iconv, both set up once. Rounds alternate; medians are compared, and the titles stored must
// be the same bytes.
#include "course/BookDatabase.h"
#include "foundation/Ciphers.h"
#include "foundation/SysInfo.h"
#include "platform/base/NativePath.h"

#include <iconv.h>
#include <openssl/evp.h>
#include <sqlite3.h>

#include <QByteArray>
#include <QFile>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

constexpr double c_dLimit = 1.3;
constexpr int c_nRounds = 5;
constexpr int c_nReadings = 20;
constexpr qint32 c_nCourseId = 42;

[[noreturn]] void Fail(const char* pszWhat) {
    std::fprintf(stderr, "bench_store: %s\n", pszWhat);
    std::exit(2);
}

double SecondsOf(const std::function<void()>& step) {
    const auto start = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Title bytes as the store keeps them, straight on libcrypto and iconv.
class CBareCipher {
public:
    explicit CBareCipher(const QByteArray& keyText) {
        const auto* pKey = reinterpret_cast<const unsigned char*>(keyText.constData());
        for (const bool bEncrypt : {true, false}) {
            EVP_CIPHER_CTX* pContext = EVP_CIPHER_CTX_new();
            EVP_CipherInit_ex(pContext, EVP_des_ede_ecb(), nullptr, pKey, nullptr, bEncrypt ? 1 : 0);
            EVP_CIPHER_CTX_set_padding(pContext, 0);
            (bEncrypt ? m_pEncrypt : m_pDecrypt) = pContext;
        }
        for (int n = 0; n < 16; ++n)
            m_values[static_cast<unsigned char>(c_szDigits[n])] = static_cast<unsigned char>(n);
    }
    ~CBareCipher() {
        EVP_CIPHER_CTX_free(m_pEncrypt);
        EVP_CIPHER_CTX_free(m_pDecrypt);
        iconv_close(m_toCodePage);
        iconv_close(m_fromCodePage);
    }
    CBareCipher(const CBareCipher&) = delete;
    CBareCipher& operator=(const CBareCipher&) = delete;

    int Encrypt(const QString& strTitle, char* pHex) {
        std::array<char, 1024> plain{};
        std::array<unsigned char, 1024> cipher;
        char* pIn = reinterpret_cast<char*>(const_cast<QChar*>(strTitle.constData()));
        char* pOut = plain.data();
        std::size_t nIn = static_cast<std::size_t>(strTitle.size()) * 2;
        std::size_t nOut = plain.size();
        iconv(m_toCodePage, &pIn, &nIn, &pOut, &nOut);
        const int nPlain = (static_cast<int>(pOut - plain.data()) + 7) / 8 * 8;
        int nCipher = 0;
        EVP_CipherUpdate(m_pEncrypt, cipher.data(), &nCipher, reinterpret_cast<unsigned char*>(plain.data()),
                         nPlain);
        for (int n = 0; n < nCipher; ++n) {
            *pHex++ = c_szDigits[cipher[static_cast<std::size_t>(n)] >> 4];
            *pHex++ = c_szDigits[cipher[static_cast<std::size_t>(n)] & 15];
        }
        return nCipher * 2;
    }

    QString Decrypt(const unsigned char* pHex, int nHex) {
        std::array<unsigned char, 1024> cipher;
        std::array<char, 1024> plain;
        std::array<char16_t, 1024> text;
        for (int n = 0; n < nHex / 2; ++n)
            cipher[static_cast<std::size_t>(n)] =
                static_cast<unsigned char>(m_values[pHex[2 * n]] << 4 | m_values[pHex[2 * n + 1]]);
        int nPlain = 0;
        EVP_CipherUpdate(m_pDecrypt, reinterpret_cast<unsigned char*>(plain.data()), &nPlain, cipher.data(),
                         nHex / 2);
        char* pIn = plain.data();
        char* pOut = reinterpret_cast<char*>(text.data());
        std::size_t nIn = static_cast<std::size_t>(std::find(pIn, pIn + nPlain, '\0') - pIn);
        std::size_t nOut = sizeof text;
        iconv(m_fromCodePage, &pIn, &nIn, &pOut, &nOut);
        return QString(reinterpret_cast<const QChar*>(text.data()),
                       (pOut - reinterpret_cast<char*>(text.data())) / 2);
    }

private:
    static constexpr char c_szDigits[] = "0123456789ABCDEF";
    EVP_CIPHER_CTX* m_pEncrypt = nullptr;
    EVP_CIPHER_CTX* m_pDecrypt = nullptr;
    iconv_t m_toCodePage = iconv_open("GB18030", "UTF-16LE");
    iconv_t m_fromCodePage = iconv_open("UTF-16LE", "GB18030");
    std::array<unsigned char, 256> m_values{};
};

/// The same work without the store.
class CBareStore {
public:
    CBareStore(const QByteArray& path, CBareCipher& cipher) : m_cipher(cipher) {
        if (sqlite3_open_v2(path.constData(), &m_pDatabase, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            Fail("can't open the bare database");
        sqlite3_exec(m_pDatabase, "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL", nullptr, nullptr,
                     nullptr);
        m_pBegin = Prepare("BEGIN IMMEDIATE");
        m_pCommit = Prepare("COMMIT");
        m_pCount = Prepare("SELECT COUNT(*) AS ChildrenCount FROM Book WHERE ParentId = ?");
        m_pNone = Prepare("SELECT * FROM Book WHERE 1 = 0");
        m_pInsert = Prepare("INSERT INTO Book (Title, ParentId, [Index]) VALUES (?, ?, ?)");
        m_pChildren = Prepare("SELECT Id, Title, Type FROM Book WHERE ParentId = ? ORDER BY [Index] ASC");
    }
    ~CBareStore() {
        for (sqlite3_stmt* pStatement : {m_pBegin, m_pCommit, m_pCount, m_pNone, m_pInsert, m_pChildren})
            sqlite3_finalize(pStatement);
        sqlite3_exec(m_pDatabase, "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
        sqlite3_close(m_pDatabase);
    }
    CBareStore(const CBareStore&) = delete;
    CBareStore& operator=(const CBareStore&) = delete;

    void Add(qint32 nParentId, const QString& strTitle) {
        std::array<char, 2048> title;
        const int nLength = m_cipher.Encrypt(strTitle, title.data());
        Run(m_pBegin);
        sqlite3_bind_int(m_pCount, 1, nParentId);
        sqlite3_step(m_pCount);
        const int nCount = sqlite3_column_int(m_pCount, 0);
        sqlite3_reset(m_pCount);
        Run(m_pNone);
        sqlite3_bind_text(m_pInsert, 1, title.data(), nLength, SQLITE_STATIC);
        sqlite3_bind_int(m_pInsert, 2, nParentId);
        sqlite3_bind_int(m_pInsert, 3, nCount + 1);
        Run(m_pInsert);
        sqlite3_last_insert_rowid(m_pDatabase);
        Run(m_pCommit);
    }

    void Children(qint32 nParentId, QList<NodeHeader>& list) {
        sqlite3_bind_int(m_pChildren, 1, nParentId);
        while (sqlite3_step(m_pChildren) == SQLITE_ROW)
            list.append(
                {sqlite3_column_int(m_pChildren, 0),
                 m_cipher.Decrypt(sqlite3_column_text(m_pChildren, 1), sqlite3_column_bytes(m_pChildren, 1)),
                 sqlite3_column_int(m_pChildren, 2)});
        sqlite3_reset(m_pChildren);
    }

private:
    sqlite3_stmt* Prepare(const char* pszWording) {
        sqlite3_stmt* pStatement = nullptr;
        if (sqlite3_prepare_v2(m_pDatabase, pszWording, -1, &pStatement, nullptr) != SQLITE_OK)
            Fail(sqlite3_errmsg(m_pDatabase));
        return pStatement;
    }
    void Run(sqlite3_stmt* pStatement) {
        if (sqlite3_step(pStatement) != SQLITE_DONE)
            Fail(sqlite3_errmsg(m_pDatabase));
        sqlite3_reset(pStatement);
    }

    CBareCipher& m_cipher;
    sqlite3* m_pDatabase = nullptr;
    sqlite3_stmt* m_pBegin;
    sqlite3_stmt* m_pCommit;
    sqlite3_stmt* m_pCount;
    sqlite3_stmt* m_pNone;
    sqlite3_stmt* m_pInsert;
    sqlite3_stmt* m_pChildren;
};

struct Times {
    double dAdd;
    double dRead;
};

Times Measure(const QStringList& titles, const std::function<void(const QString&)>& add,
              const std::function<void(QList<NodeHeader>&)>& read) {
    Times times{};
    times.dAdd = SecondsOf([&] {
        for (const QString& strTitle : titles)
            add(strTitle);
    });
    times.dRead = SecondsOf([&] {
        for (int n = 0; n < c_nReadings; ++n) {
            QList<NodeHeader> list;
            read(list);
            if (list.size() != titles.size() || list.last().Title != titles.last())
                Fail("a title came back changed");
        }
    });
    return times;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

bool Report(const char* pszName, const std::vector<double>& ours, const std::vector<double>& bare) {
    const double dRatio = Median(ours) / Median(bare);
    std::printf("%s: ours %.1f ms, bare %.1f ms (medians of %d rounds)\n", pszName, Median(ours) * 1000,
                Median(bare) * 1000, c_nRounds);
    std::printf("ratio %s: %.2f (limit %.1f)\n", pszName, dRatio, c_dLimit);
    return dRatio <= c_dLimit;
}

QByteArray StoredTitles(const QByteArray& path) {
    QByteArray all;
    sqlite3* pDatabase = nullptr;
    sqlite3_open(path.constData(), &pDatabase);
    sqlite3_exec(
        pDatabase, "SELECT group_concat(Title) FROM (SELECT Title FROM Book ORDER BY Id)",
        [](void* pAll, int, char** ppValues, char**) {
            *static_cast<QByteArray*>(pAll) = ppValues[0];
            return 0;
        },
        &all, nullptr);
    sqlite3_close(pDatabase);
    return all;
}

void FreshSeed(const QString& strPath) {
    QFile::remove(strPath);
    if (!QFile::copy(QStringLiteral(VOREL_SEED_DATA "/DataBase/VorelCourse.mdb"), strPath))
        Fail("can't write to the work folder");
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2)
        Fail("usage: bench_store WORK_FOLDER [NODES]");
    const QString strFolder = QString::fromLocal8Bit(argv[1]);
    const int nNodes = argc > 2 ? std::atoi(argv[2]) : 10'000;
    CSysInfo::Reset(Platform::FromNative(strFolder) + QStringLiteral("\\Vorel"));
    CBareCipher cipher(Md5Hex(QByteArray("Q7m!xT2z#k042")));
    QStringList titles;
    for (int n = 0; n < nNodes; ++n)
        titles.append(QStringLiteral("第%1节 课程内容").arg(n));

    const QString strOurs = strFolder + QStringLiteral("/ours.mdb");
    const QString strBare = strFolder + QStringLiteral("/bare.mdb");
    std::vector<double> oursAdd, oursRead, bareAdd, bareRead;
    for (int nRound = 0; nRound < c_nRounds; ++nRound) {
        FreshSeed(strBare);
        {
            CBareStore store(strBare.toLocal8Bit(), cipher);
            const Times times = Measure(
                titles, [&](const QString& strTitle) { store.Add(c_nRootNodeId, strTitle); },
                [&](QList<NodeHeader>& list) { store.Children(c_nRootNodeId, list); });
            bareAdd.push_back(times.dAdd);
            bareRead.push_back(times.dRead);
        }
        FreshSeed(strOurs);
        CBookDatabase store(Platform::FromNative(strOurs), c_nCourseId);
        store.Open();
        const Times times = Measure(
            titles, [&](const QString& strTitle) { store.AddNode(c_nRootNodeId, strTitle); },
            [&](QList<NodeHeader>& list) { store.GetChildren(c_nRootNodeId, list); });
        oursAdd.push_back(times.dAdd);
        oursRead.push_back(times.dRead);
    }
    if (StoredTitles(strOurs.toLocal8Bit()) != StoredTitles(strBare.toLocal8Bit()))
        Fail("the two sides stored different titles");
    const bool bAdd = Report("store_add", oursAdd, bareAdd);
    const bool bRead = Report("store_children", oursRead, bareRead);
    QFile::remove(strOurs);
    QFile::remove(strBare);
    return bAdd && bRead ? 0 : 1;
}
