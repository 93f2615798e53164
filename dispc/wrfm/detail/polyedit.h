#pragma once

#include "dispc/wrfm/poly.h"

#include <array>

/// Up to four vertices.
struct gxSMDGDPoly::Neighbours {
  void add(int v) { vertices[count++] = v; }
  int const *begin() const { return vertices.data(); }
  int const *end() const { return vertices.data() + count; }

  std::array<int, 4> vertices{};
  std::size_t count = 0;
};

/// One change of an outline that has yet to prove valid. Keeps what the change touches, and nothing else, and puts it
/// back unless keep() is called, whatever goes wrong meanwhile.
///
/// A change of one vertex touches at most four fillets for each of the vertices that are checked after it; the
/// vertices and the labels are put back by the reverse of what was done to them.
class gxSMDGDPoly::Edit
{
 public:
  explicit Edit(gxSMDGDPoly &poly) : poly_(poly), wasOpen_(poly.isOpen_), labelsInOrder_(poly.labelsInOrder_)
  {
    poly.mutating();
  }
  Edit(Edit const &) = delete;
  Edit &operator=(Edit const &) = delete;
  ~Edit();

  /// @name The changes; one for each transaction, but for the last two
  ///@{
  void insert(int at, gxSMDGDPolyVertex &&v);
  void replace(int at, gxSMDGDPolyVertex &&v);
  void remove(int at);
  void replaceAll(std::vector<gxSMDGDPolyVertex> &&vertices);
  void close() { poly_.isOpen_ = 0; }
  /// Keeps the fillets that validateReplacement_(i) is about to find anew, in the present numbering.
  void keepFilletsAround(int i);
  ///@}

  /// The change holds.
  void keep() { done_ = true; }

 private:
  enum class Kind { none, insertion, replacement, removal, all };
  struct KeptFillet {
    int vertex = 0;
    gxSMDGDPoly::Fillet fillet;
  };
  using Vertices = std::vector<gxSMDGDPolyVertex>;

  Fillet filletAt(int v) const;
  void put(KeptFillet const &kept) noexcept;
  void insertAt(int at, gxSMDGDPolyVertex &&v, Fillet const &fillet);
  void eraseAt(int at) noexcept;
  void swapAll() noexcept;
  void findLabels();
  void undo() noexcept;

  gxSMDGDPoly &poly_;
  bool done_ = false;
  std::uint8_t wasOpen_;
  bool labelsInOrder_;
  bool keptLabels_ = false;
  std::size_t addedLabels_ = 0;
  Kind kind_ = Kind::none;
  int at_ = 0;
  gxSMDGDPolyVertex vertex_;  ///< that was replaced or removed
  Fillet fillet_;             ///< of the removed one
  std::array<KeptFillet, 8> fillets_;
  int numFillets_ = 0;
  // Of the whole, where all of it changes; the labels also where they were found anew.
  Vertices vertices_;
  std::vector<std::int32_t> labels_;
  std::vector<gxVector<2>> prevRoundPoints_, nextRoundPoints_;
  std::vector<double> roundSpans_;
};
