#pragma once

#include "records/Source.h"
#include "store/Installation.h"

namespace kestrix::records {

/// Records from the files of one installation.
class FileSource : public Source {
 public:
  explicit FileSource(Installation installation) : installation_(std::move(installation)) {}

  [[nodiscard]] Register ReadRegister() override;
  [[nodiscard]] std::vector<ProjectLine> ListProjects(const Organisation& of) override;
  [[nodiscard]] Study ReadStudy(const Organisation& of) override;
  [[nodiscard]] std::optional<Project> ReadProject(const Organisation& of,
                                                   const QString& number) override;
  [[nodiscard]] FileFacts LookAtPicture(const Organisation& of, const QString& name) override;
  [[nodiscard]] QByteArray ReadPicture(const Organisation& of, const QString& name) override;
  [[nodiscard]] FileFacts LookAtFile(const QString& path) override;
  [[nodiscard]] QByteArray ReadFile(const QString& path) override;
  [[nodiscard]] bool HasPicture(const Organisation& of, const QString& name) override;
  [[nodiscard]] bool HasFile(const QString& path) override;
  [[nodiscard]] Lists ReadLists() override;
  [[nodiscard]] QString StudyPath(const Organisation& of) override;
  [[nodiscard]] bool HasStudy(const Organisation& of) override;
  void CheckWhole(const Organisation& of) override;
  [[nodiscard]] QMap<qint64, QString> StudyFiles() override;
  [[nodiscard]] QMap<qint64, QString> PictureFolders() override;

  [[nodiscard]] const Installation& installation() const { return installation_; }

 private:
  [[nodiscard]] std::optional<QString> PicturePath(const Organisation& of,
                                                   const QString& name) const;

  Installation installation_;
};

}  // namespace kestrix::records
