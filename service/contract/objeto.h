// Variables that hold an object or nothing. Using one while it holds nothing throws data::Error, so
// that a trap reports it as it reports any other failure. Objeto refers, Propio owns.
#pragma once

#include <memory>
#include <utility>

#include "data/error.h"

namespace tarvik::service {

[[noreturn]] inline void SinObjeto() { throw data::Error("La variable de objeto no está establecida"); }

template <class T>
class Objeto {
 public:
  Objeto() = default;
  Objeto(T* object) : object_(object) {}  // NOLINT: set like a pointer

  T& operator*() const {
    if (!object_) SinObjeto();
    return *object_;
  }
  T* operator->() const { return &**this; }
  explicit operator bool() const { return object_ != nullptr; }
  [[nodiscard]] T* Get() const { return object_; }

 private:
  T* object_ = nullptr;
};

template <class T>
class Propio {
 public:
  Propio() = default;
  Propio& operator=(std::unique_ptr<T> object) {
    object_ = std::move(object);
    return *this;
  }

  T& operator*() const {
    if (!object_) SinObjeto();
    return *object_;
  }
  T* operator->() const { return &**this; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  std::unique_ptr<T> object_;
};

}  // namespace tarvik::service
