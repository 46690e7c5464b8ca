#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

namespace kestrix {

/// The place of a form that exists once: the first reference makes it and runs its load; an unload
/// empties the place, and the next reference makes it anew.
template <class F>
class FormSlot {
 public:
  explicit FormSlot(std::function<std::unique_ptr<F>()> make) : make_(std::move(make)) {}
  ~FormSlot() { delete form_.data(); }
  Q_DISABLE_COPY_MOVE(FormSlot)

  /// The form, loaded. A form whose load unloaded it again is still there until control is back in
  /// the event loop, so that the caller can end what it was doing.
  F& Get() {
    if (form_) return *form_;
    F* made = make_().release();
    form_ = made;
    QObject::connect(made, &F::Unloaded, made, [this, made] {
      if (form_ == made) form_ = nullptr;
    });
    made->LoadForm();
    return *made;
  }
  [[nodiscard]] bool IsLoaded() const { return !form_.isNull(); }
  [[nodiscard]] F* IfLoaded() const { return form_.data(); }
  /// Nothing when it isn't loaded.
  void Unload() {
    if (form_) form_->UnloadForm();
  }

 private:
  std::function<std::unique_ptr<F>()> make_;
  QPointer<F> form_;
};

}  // namespace kestrix
