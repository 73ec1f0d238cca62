#pragma once

#include <QString>

#include <initializer_list>
#include <utility>
#include <vector>

/// Variables of the environment, which are as before when this goes.
class CEnvironment {
public:
    /// A null string stands for a variable that isn't there.
    CEnvironment(std::initializer_list<std::pair<const char*, QString>> variables) {
        for (const auto& [szName, strValue] : variables)
            Set(szName, strValue);
    }
    ~CEnvironment() {
        for (; !m_before.empty(); m_before.pop_back())
            Put(m_before.back().first, m_before.back().second);
    }
    Q_DISABLE_COPY(CEnvironment)

    void Set(const char* szName, const QString& strValue) {
        m_before.emplace_back(szName, qgetenv(szName));
        Put(szName, strValue.isNull() ? QByteArray() : strValue.toUtf8());
    }

private:
    static void Put(const char* szName, const QByteArray& value) {
        value.isNull() ? qunsetenv(szName) : qputenv(szName, value);
    }
    std::vector<std::pair<const char*, QByteArray>> m_before;
};
