#pragma once

#include <QAbstractListModel>
#include <QCache>
#include <QPixmap>
#include <QTimer>
#include <memory>
#include <vector>

#include "paper/Layout.h"

namespace kestrix::preview {

/// The pages of a layout, small. One is painted when it is asked for, behind the event in hand.
class Thumbnails : public QAbstractListModel {
  Q_OBJECT

 public:
  explicit Thumbnails(QObject* parent = nullptr);

  void SetLayout(std::shared_ptr<const paper::Layout> layout);
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  void PaintNext();
  [[nodiscard]] double Scale() const;

  std::shared_ptr<const paper::Layout> layout_;
  mutable QCache<int, QPixmap> painted_;
  mutable std::vector<int> wanted_;  ///< the last one first
  mutable QTimer paint_next_;
};

}  // namespace kestrix::preview
