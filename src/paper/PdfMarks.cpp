#include "paper/PdfMarks.h"

#include <exception>
#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFEFStreamObjectHelper.hh>
#include <qpdf/QPDFEmbeddedFileDocumentHelper.hh>
#include <qpdf/QPDFFileSpecObjectHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <string>
#include <utility>

#include "platform/Failure.h"

namespace kestrix::paper {
namespace {

using Object = QPDFObjectHandle;

Object Text(const QString& text) {
  return Object::newUnicodeString(text.toStdString());
}

class Marker {
 public:
  explicit Marker(QPDF& pdf) : pdf_(pdf), pages_(pdf.getAllPages()) {}

  void AddBookmarks(const std::vector<PdfBookmark>& bookmarks) {
    Object root = pdf_.makeIndirectObject(Object::parse("<< /Type /Outlines >>"));
    std::vector<std::pair<int, Object>> open{{0, root}};
    for (const PdfBookmark& bookmark : bookmarks) {
      while (open.back().first >= bookmark.level) open.pop_back();
      Object item = pdf_.makeIndirectObject(Object::newDictionary());
      item.replaceKey("/Title", Text(bookmark.text));
      item.replaceKey("/Dest", Destination(bookmark.place));
      Append(open.back().second, item);
      open.emplace_back(bookmark.level, item);
    }
    pdf_.getRoot().replaceKey("/Outlines", root);
    pdf_.getRoot().replaceKey("/PageMode", Object::newName("/UseOutlines"));
  }

  void AddLinks(const std::vector<PdfLink>& links) {
    Object frame = Object::parse("<< /Type /Annot /Subtype /Link /Border [ 0 0 0 ] /F 4 >>");
    for (const PdfLink& link : links) {
      Object& page = pages_.at(static_cast<size_t>(link.page));
      const qreal height = HeightOf(page);
      Object annotation = frame.shallowCopy();
      annotation.replaceKey("/Rect", Object::newArray(Object::Rectangle(
                                         link.area.left(), height - link.area.bottom(),
                                         link.area.right(), height - link.area.top())));
      annotation.replaceKey("/Dest", Destination(link.target));
      if (!page.getKey("/Annots").isArray()) page.replaceKey("/Annots", Object::newArray());
      page.getKey("/Annots").appendItem(pdf_.makeIndirectObject(annotation));
    }
  }

  /// `drawings` must live until the file was written.
  void AddStamps(QPDF& drawings, const std::vector<PdfStamp>& stamps) {
    std::vector<Object> forms;
    for (const Object& drawing : drawings.getAllPages()) {
      forms.push_back(
          pdf_.copyForeignObject(QPDFPageObjectHelper(drawing).getFormXObjectForPage()));
    }
    std::map<int, std::string> contents;
    for (const PdfStamp& stamp : stamps) {
      Object& page = pages_.at(static_cast<size_t>(stamp.page));
      Object& form = forms.at(static_cast<size_t>(stamp.drawing));
      Object resources = page.getKey("/Resources");
      if (!resources.getKey("/XObject").isDictionary()) {
        resources.replaceKey("/XObject", Object::newDictionary());
      }
      const std::string name = "/Drawing" + std::to_string(stamp.drawing);
      resources.getKey("/XObject").replaceKey(name, form);
      const qreal height = form.getDict().getKey("/BBox").getArrayItem(3).getNumericValue();
      contents[stamp.page] +=
          QStringLiteral("q 1 0 0 1 %1 %2 cm %3 Do Q\n")
              .arg(QString::number(stamp.corner.x(), 'f', 2),
                   QString::number(HeightOf(page) - stamp.corner.y() - height, 'f', 2),
                   QString::fromStdString(name))
              .toStdString();
    }
    // Before the page's own content, which leaves its scale behind.
    for (const auto& [page, content] : contents) {
      pages_.at(static_cast<size_t>(page)).addPageContents(Object::newStream(&pdf_, content), true);
    }
  }

  void Describe(const PdfFacts& facts) {
    pdf_.getRoot().replaceKey("/Lang", Text(facts.language));
    pdf_.getRoot().replaceKey("/ViewerPreferences", Object::parse("<< /DisplayDocTitle true >>"));
    if (!facts.date.isValid()) return;
    Object info = pdf_.makeIndirectObject(Object::newDictionary());
    info.replaceKey("/Title", Text(facts.title));
    info.replaceKey("/Author", Text(facts.author));
    info.replaceKey("/Subject", Text(facts.subject));
    info.replaceKey("/Creator", Text(QStringLiteral("KestrixStudy")));
    info.replaceKey("/CreationDate", Object::newString(TimeOf(facts.date)));
    info.replaceKey("/ModDate", Object::newString(TimeOf(facts.date)));
    pdf_.getTrailer().replaceKey("/Info", info);
    pdf_.getRoot().removeKey("/Metadata");
  }

  void Attach(const Attachment& attachment, QDate date) {
    if (attachment.name.isEmpty()) return;
    auto stream = QPDFEFStreamObjectHelper::createEFStream(pdf_, attachment.bytes.toStdString());
    stream.setCreationDate(TimeOf(date)).setModDate(TimeOf(date));
    stream.setSubtype(attachment.type.toStdString());
    auto file =
        QPDFFileSpecObjectHelper::createFileSpec(pdf_, attachment.name.toStdString(), stream);
    file.setDescription(attachment.description.toStdString());
    QPDFEmbeddedFileDocumentHelper(pdf_).replaceEmbeddedFile(attachment.name.toStdString(), file);
  }

 private:
  [[nodiscard]] static std::string TimeOf(QDate date) {
    return date.toString(QStringLiteral("'D:'yyyyMMdd'000000Z'")).toStdString();
  }

  [[nodiscard]] static qreal HeightOf(Object page) {
    return page.getKey("/MediaBox").getArrayItem(3).getNumericValue();
  }

  /// Many links lead to one place, so it is stored once.
  [[nodiscard]] Object Destination(const PdfPlace& place) {
    Object& destination = destinations_[{place.page, place.y}];
    if (!destination.isInitialized()) {
      const Object page = pages_.at(static_cast<size_t>(place.page));
      destination = pdf_.makeIndirectObject(
          Object::newArray({page, Object::newName("/XYZ"), Object::newNull(),
                            Object::newReal(HeightOf(page) - place.y, 2), Object::newNull()}));
    }
    return destination;
  }

  /// As the last of those below `parent`, which shows itself closed.
  static void Append(Object parent, Object item) {
    item.replaceKey("/Parent", parent);
    Object before = parent.getKey("/Last");
    if (before.isNull()) {
      parent.replaceKey("/First", item);
    } else {
      item.replaceKey("/Prev", before);
      before.replaceKey("/Next", item);
    }
    parent.replaceKey("/Last", item);
    const bool is_root = parent.hasKey("/Type");
    const int count = parent.hasKey("/Count") ? parent.getKey("/Count").getIntValueAsInt() : 0;
    parent.replaceKey("/Count", Object::newInteger(is_root ? count + 1 : count - 1));
  }

  QPDF& pdf_;
  std::vector<Object> pages_;
  std::map<std::pair<int, qreal>, Object> destinations_;  ///< by page and height
};

}  // namespace

QByteArray WithMarks(const QByteArray& pdf, const std::vector<PdfBookmark>& bookmarks,
                     const std::vector<PdfLink>& links, const PdfFacts& facts,
                     const PdfStamps& stamps) try {
  QPDF drawings;
  QPDF file;
  file.processMemoryFile("pdf", pdf.constData(), static_cast<size_t>(pdf.size()));
  Marker marker(file);
  marker.AddBookmarks(bookmarks);
  marker.AddLinks(links);
  marker.Describe(facts);
  if (!stamps.places.empty()) {
    drawings.processMemoryFile("drawings", stamps.drawings.constData(),
                               static_cast<size_t>(stamps.drawings.size()));
    marker.AddStamps(drawings, stamps.places);
  }
  marker.Attach(facts.attachment, facts.date);
  QPDFWriter writer(file);
  writer.setOutputMemory();
  writer.setDeterministicID(true);
  writer.setObjectStreamMode(qpdf_o_generate);
  writer.write();
  const auto bytes = writer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(bytes->getBuffer()),
          static_cast<qsizetype>(bytes->getSize())};
} catch (const std::exception& error) {
  throw Failure(failure::kSyntax,
                QStringLiteral("The pages can't be linked: %1.").arg(QLatin1String(error.what())));
}

}  // namespace kestrix::paper
