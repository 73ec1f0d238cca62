-- The database that every new course starts with.
--
-- "Title" is as wide as the enciphered form of the longest title needs: an imported file's name may be 255
-- characters long, each takes up to 4 bytes of the code page, and each byte becomes two digits. A title of 40
-- characters takes at most 320. The engine itself knows no widths, hence the check: it refuses what the
-- column could not hold.

PRAGMA encoding = 'UTF-8';

CREATE TABLE Book (
    Id               INTEGER PRIMARY KEY AUTOINCREMENT,
    ParentId         INTEGER NOT NULL DEFAULT 0,
    [Index]          INTEGER NOT NULL DEFAULT 0,
    Title            VARCHAR(2048) NOT NULL DEFAULT '' CHECK (length(Title) <= 2048),
    Type             INTEGER NOT NULL DEFAULT -1,
    Path             VARCHAR(2048) NOT NULL DEFAULT '',
    OpenType         INTEGER NOT NULL DEFAULT 0,
    FileName         VARCHAR(260) NOT NULL DEFAULT '',
    Comment          TEXT NOT NULL DEFAULT '',
    [Size]           DOUBLE NOT NULL DEFAULT 0,
    TimeLastModified DATETIME
);

-- The children of a node in their order, which is how the tree is always read.
CREATE INDEX BookOrder ON Book (ParentId, [Index]);

-- A child by its title: asked for each file when a folder of thousands is imported.
CREATE INDEX BookTitle ON Book (ParentId, Title);

-- The school, the course, and the teacher, who is the root of the tree. Their titles come with the course.
INSERT INTO Book (Id, ParentId, [Index]) VALUES (1, 0, 1), (2, 0, 2), (3, 0, 3);

PRAGMA user_version = 1;
