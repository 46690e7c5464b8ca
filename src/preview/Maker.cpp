#include "preview/Maker.h"

#include "paper/Pdf.h"
#include "platform/Failure.h"
#include "reports/Compose.h"
#include "reports/Export.h"
#include "reports/Json.h"

namespace kestrix::preview {
namespace {

/// Runs the steps that make a report; what they fail with stands in it.
template <class Steps>
MadeReport Make(const Installation& installation, Steps steps) {
  auto made = std::make_shared<Made>();
  made->source = std::make_shared<records::FileSource>(installation);
  try {
    if (!steps(*made)) return nullptr;
  } catch (const Failure& failure) {
    made->failure = failure.description();
  }
  return made;
}

void LayOut(Made& made, const reports::Options& options) {
  made.layout = std::make_unique<paper::Layout>(made.document, reports::SizeOf(options.paper),
                                                paper::kPdfDots);
}

}  // namespace

MadeReport MakeCover(const Installation& installation, const Wish& wish) {
  return Make(installation, [&wish](Made& made) {
    made.whole = false;
    made.report = reports::MakeReport(*made.source, wish.organisation, wish.project, wish.options,
                                      reports::Look::kRowsAlone);
    made.document = reports::ComposeCover(made.report, *made.source);
    LayOut(made, wish.options);
    return true;
  });
}

MadeReport MakeWhole(const Installation& installation, const Wish& wish,
                     const std::function<bool()>& is_stopped) {
  return Make(installation, [&](Made& made) {
    made.report = reports::MakeReport(*made.source, wish.organisation, wish.project, wish.options);
    if (is_stopped()) return false;
    const QByteArray digest = reports::DigestOf(reports::JsonBytes(made.report));
    made.document = reports::Compose(made.report, digest, *made.source);
    if (is_stopped()) return false;
    LayOut(made, wish.options);
    return !is_stopped();
  });
}

}  // namespace kestrix::preview
