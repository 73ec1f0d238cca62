#pragma once

#include "foundation/FolderWalk.h"
#include "platform/base/People.h"

/// Lets everything through, and keeps the windows painted before each entry.
class CPaintingFilter : public Torvane::File::IWalkFilter {
public:
    explicit CPaintingFilter(Torvane::Dialog::MFC::IPeople& people) : m_people(people) {}
    bool Cancelled() override {
        m_people.KeepPainting();
        return false;
    }
    bool AcceptFile(const QString&) override { return true; }
    bool AcceptFolder(const QString&) override { return true; }

private:
    Torvane::Dialog::MFC::IPeople& m_people;
};
