#pragma once

#include <string>
#include <string_view>

#include "ads/basic_object.hpp"
#include "ads/staged_values.hpp"
#include "lab/store/entry_store.hpp"
#include "platform/foreseen_write.hpp"

namespace twk::lab {

/// An object of an Exchange 5.5 directory: a container, a mailbox, a custom recipient, a distribution list.
/// Objects reached from it have its server part in their paths.
class ExchangeObject final : public ads::BasicObject, public platform::ForeseenWrite {
 public:
  /// A stored object. Raises kNoSuchObject.
  ExchangeObject(EntryStore& store, std::string server, std::string_view dn);

  [[nodiscard]] std::string Name() const override;
  [[nodiscard]] std::string Class() const override { return object_class_; }
  [[nodiscard]] std::string ADsPath() const override;
  [[nodiscard]] std::string Parent() const override;

  platform::Value Get(std::string_view attribute) override;
  void Put(std::string_view attribute, const platform::Value& value) override;
  void PutEx(int control, std::string_view attribute, const platform::Value& value) override;
  void SetInfo() override;
  void foresee_write() override;
  void foresee_password(std::string_view password) override;

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;
  platform::ObjectPtr GetObject(std::string_view object_class, std::string_view relative_name) override;
  platform::ObjectPtr Create(std::string_view object_class, std::string_view relative_name) override;
  void Delete(std::string_view object_class, std::string_view relative_name) override;

  void Add(std::string_view path) override;
  void Remove(std::string_view path) override;
  bool IsMember(std::string_view path) override;
  std::vector<platform::ObjectPtr> Members() override;
  std::vector<platform::ObjectPtr> Groups() override;

 private:
  struct New {};
  ExchangeObject(New, EntryStore& store, std::string server, std::string dn, std::string object_class);

  [[nodiscard]] platform::ObjectPtr bind(std::string_view dn) const;
  [[nodiscard]] std::vector<platform::ObjectPtr> bind_all(std::string_view attribute);
  [[nodiscard]] platform::ValueList stored(std::string_view attribute);
  /// The stored child of that name and class. Raises kNoSuchObject.
  [[nodiscard]] std::string existing_child(std::string_view object_class,
                                           std::string_view relative_name) const;
  /// The object of this directory that a path refers to, whatever port it names.
  [[nodiscard]] std::string member_dn(std::string_view path) const;

  EntryStore& store_;
  std::string server_;
  std::string dn_;
  std::string object_class_;
  bool new_ = false;
  ads::StagedValues staged_;
};

/// Binds the object of that name; the organisation for an empty one. Raises kNoSuchObject, kInvalidDn.
platform::ObjectPtr bind_exchange_object(EntryStore& store, const std::string& server, std::string_view name);

}  // namespace twk::lab
