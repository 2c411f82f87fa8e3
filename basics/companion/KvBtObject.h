#pragma once
/// @file
/// Root of the serialisable classes: a virtual destructor and a Serialize that stores or loads
/// the object through an archive. The root itself has nothing to store.

#include "basics/companion/UtilityBasicsClassExport.h"

class KvBtArchive;

/// Root of the serialisable classes: a virtual destructor and a Serialize that stores or loads through an archive.
class KVBT_API KvBtObject {
 public:
  KvBtObject() = default;
  /// Nothing to copy.
  KvBtObject(const KvBtObject&) = default;
  /// Nothing to copy.
  KvBtObject& operator=(const KvBtObject&) = default;
  virtual ~KvBtObject();
  /// Stores or loads the object by the direction of ar; the root has nothing to store.
  virtual void Serialize(KvBtArchive& ar);
};
