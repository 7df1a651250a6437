// The one instance of a class, made on first use and kept until the client is unloaded.
#ifndef BRIDGE_SINGLETON_H
#define BRIDGE_SINGLETON_H

namespace bridge {

template <class T> class SingletonC {
public:
  [[nodiscard]] static T &GetInstance() {
    static T instance;
    return instance;
  }
};

} // namespace bridge

#endif
