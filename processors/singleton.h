// The one instance of a class, made on first use and kept until the client is unloaded.
#ifndef PROCESSORS_SINGLETON_H
#define PROCESSORS_SINGLETON_H

namespace processors {

template <class T> class SingletonC {
public:
  [[nodiscard]] static T &GetInstance() {
    static T instance;
    return instance;
  }
};

} // namespace processors

#endif
