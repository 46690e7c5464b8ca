#include "paper/PdfMarks.h"

#include <exception>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

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
    Object last_top;
    for (const PdfBookmark& bookmark : bookmarks) {
      Object item = pdf_.makeIndirectObject(Object::newDictionary());
      item.replaceKey("/Title", Text(bookmark.text));
      item.replaceKey("/Dest", Destination(bookmark.place));
      Append(bookmark.top || !last_top.isInitialized() ? root : last_top, item);
      if (bookmark.top) last_top = item;
    }
    pdf_.getRoot().replaceKey("/Outlines", root);
    pdf_.getRoot().replaceKey("/PageMode", Object::newName("/UseOutlines"));
  }

  void AddLinks(const std::vector<PdfLink>& links) {
    for (const PdfLink& link : links) {
      Object& page = pages_.at(static_cast<size_t>(link.page));
      const qreal height = HeightOf(page);
      Object annotation = Object::parse("<< /Type /Annot /Subtype /Link /Border [ 0 0 0 ] /F 4 >>");
      annotation.replaceKey("/Rect", Object::newArray(Object::Rectangle(
                                         link.area.left(), height - link.area.bottom(),
                                         link.area.right(), height - link.area.top())));
      annotation.replaceKey("/Dest", Destination(link.target));
      if (!page.getKey("/Annots").isArray()) page.replaceKey("/Annots", Object::newArray());
      page.getKey("/Annots").appendItem(pdf_.makeIndirectObject(annotation));
    }
  }

 private:
  [[nodiscard]] static qreal HeightOf(Object page) {
    return page.getKey("/MediaBox").getArrayItem(3).getNumericValue();
  }

  [[nodiscard]] Object Destination(const PdfPlace& place) const {
    const Object page = pages_.at(static_cast<size_t>(place.page));
    return Object::newArray({page, Object::newName("/XYZ"), Object::newNull(),
                             Object::newReal(HeightOf(page) - place.y, 2), Object::newNull()});
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
};

}  // namespace

QByteArray WithMarks(const QByteArray& pdf, const std::vector<PdfBookmark>& bookmarks,
                     const std::vector<PdfLink>& links, const QString& language) try {
  QPDF file;
  file.processMemoryFile("pdf", pdf.constData(), static_cast<size_t>(pdf.size()));
  Marker marker(file);
  marker.AddBookmarks(bookmarks);
  marker.AddLinks(links);
  file.getRoot().replaceKey("/Lang", Text(language));
  file.getRoot().replaceKey("/ViewerPreferences", Object::parse("<< /DisplayDocTitle true >>"));
  QPDFWriter writer(file);
  writer.setOutputMemory();
  writer.setDeterministicID(true);
  writer.write();
  const auto bytes = writer.getBufferSharedPointer();
  return {reinterpret_cast<const char*>(bytes->getBuffer()),
          static_cast<qsizetype>(bytes->getSize())};
} catch (const std::exception& error) {
  throw Failure(failure::kSyntax,
                QStringLiteral("The pages can't be linked: %1.").arg(QLatin1String(error.what())));
}

}  // namespace kestrix::paper
