#pragma once

#include "server/ServerSession.h"

/// The first page of the new-course wizard without its window: the list, the search and the password step.
class CCourseChoice {
public:
    CCourseChoice(Torvane::Dialog::MFC::IPeople& people, CServerSession& session);

    /// Fetches the list; false ends the wizard, and the person has been told.
    bool Fetch();
    const QList<CCourseInfo>& GetCourses() const { return m_courses; }

    /// "课程编号:…\r\n课程名称:…\r\n教师名称:…"
    static QString DetailsText(const CCourseInfo& info);
    /// Index of the first course whose name begins with the text, ignoring ASCII case; -1 for none and for an
    /// empty text.
    int FindByPrefix(const QString& strText) const;

    enum class ENext { Stay, StayOnPassword, Go };
    /// The checks of Next. nIndex of -1 means no selection.
    ENext Next(int nIndex, const QString& strPassword);
    /// The course chosen, after Next answered Go.
    const CCourseInfo& GetChosen() const { return m_chosen; }

private:
    ENext Verify(CCourseInfo info, const QString& strPassword);

    Torvane::Dialog::MFC::IPeople& m_people;
    CServerSession& m_session;
    QList<CCourseInfo> m_courses;
    CCourseInfo m_chosen;
};
