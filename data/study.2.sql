-- Version 2 of a study.
-- A find looks through the titles of a project at each key: here they lie together, and elsewhere
-- each of them lies with its whole task.
CREATE INDEX Risk_records_titles ON Risk_records (Project_Number, nunberauto, FuntnTaskMachry);
-- A picture whose file can't be shown asks whether any task names that file.
CREATE INDEX Risk_records_of_picture_before ON Risk_records (PicBfrRcmdtn);
CREATE INDEX Risk_records_of_picture_after ON Risk_records (PicAftrRcmdtn);
PRAGMA user_version = 2;
