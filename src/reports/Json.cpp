#include "reports/Json.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

namespace kestrix::reports {
namespace {

constexpr int kVersion = 1;

QJsonValue OrNull(const QString& text) {
  return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonObject WithFacts(QJsonObject object, const records::FileFacts& facts) {
  object.insert(u"exists", facts.exists);
  object.insert(u"bytes", facts.exists ? QJsonValue(facts.bytes) : QJsonValue());
  object.insert(u"sha256", OrNull(QString::fromLatin1(facts.sha256)));
  return object;
}

QJsonObject PictureOf(const QString& name, const records::FileFacts& facts) {
  return WithFacts({{QStringLiteral("file"), name}}, facts);
}

QJsonObject ComputedOf(const records::ComputedStage& stage) {
  return {
      {QStringLiteral("index"), stage.index ? QJsonValue(*stage.index) : QJsonValue()},
      {QStringLiteral("index_band"), OrNull(stage.index_band)},
      {QStringLiteral("class"), stage.class_score},
      {QStringLiteral("class_band"), OrNull(stage.class_band)},
      {QStringLiteral("cell"),
       stage.cell != nullptr ? QJsonValue(stage.cell->name.toString()) : QJsonValue()},
      {QStringLiteral("lit"), QJsonArray::fromStringList(stage.lit)},
  };
}

QJsonObject TaskOf(const Entry& entry) {
  QJsonObject object;
  VisitFields(entry.task,
              [&object](QStringView name, const auto& value) { object.insert(name, value); });
  object.insert(
      u"pictures",
      QJsonObject{
          {QStringLiteral("before"), PictureOf(entry.task.before.picture, entry.picture_before)},
          {QStringLiteral("after"), PictureOf(entry.task.after.picture, entry.picture_after)}});
  object.insert(u"computed",
                QJsonObject{{QStringLiteral("before"), ComputedOf(entry.computed.before)},
                            {QStringLiteral("after"), ComputedOf(entry.computed.after)},
                            {QStringLiteral("reduced"), entry.computed.reduced},
                            {QStringLiteral("verdict"), entry.computed.verdict}});
  return object;
}

QJsonObject LinkOf(const Link& link) {
  return WithFacts(
      {{QStringLiteral("path"), link.link.path}, {QStringLiteral("title"), link.link.title}},
      link.facts);
}

template <class Rows, class Make>
QJsonArray ArrayOf(const Rows& rows, Make make) {
  QJsonArray array;
  for (const auto& row : rows) array.append(make(row));
  return array;
}

}  // namespace

QJsonObject ToJson(const Report& report) {
  const QJsonObject project{
      {QStringLiteral("number"), report.head.number},
      {QStringLiteral("stage"), report.head.stage},
      {QStringLiteral("description"), report.head.description},
      {QStringLiteral("prepared_by"), report.head.prepared_by},
      {QStringLiteral("links"), ArrayOf(report.links, LinkOf)},
      {QStringLiteral("tasks"), ArrayOf(report.entries, TaskOf)},
  };
  return {
      {QStringLiteral("format"), QStringLiteral("kestrix")},
      {QStringLiteral("version"), kVersion},
      {QStringLiteral("organisation"),
       QJsonObject{{QStringLiteral("name"), report.organisation.name},
                   {QStringLiteral("study"), report.organisation.study}}},
      {QStringLiteral("projects"), QJsonArray{project}},
      {QStringLiteral("orphans"), QJsonObject{{QStringLiteral("tasks"), QJsonArray()},
                                              {QStringLiteral("links"), QJsonArray()}}},
  };
}

QByteArray JsonBytes(const Report& report) {
  return QJsonDocument(ToJson(report)).toJson(QJsonDocument::Indented);
}

QByteArray DigestOf(const QByteArray& json) {
  return QCryptographicHash::hash(json, QCryptographicHash::Sha256).toHex();
}

}  // namespace kestrix::reports
