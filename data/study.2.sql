-- Version 2 of a study. A picture whose file can't be shown asks all tasks whether one of them names
-- that file: without these the engine reads every task from its disk.
CREATE INDEX Risk_records_of_picture_before ON Risk_records (PicBfrRcmdtn);
CREATE INDEX Risk_records_of_picture_after ON Risk_records (PicAftrRcmdtn);
PRAGMA user_version = 2;
