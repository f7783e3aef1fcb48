# Header only; the distribution's package is copied since the cross compiler must not see /usr/include.
source_package=""
needs=""
licence=/usr/share/doc/libsimpleini-dev/copyright
build() {
    mkdir -p "$prefix/include"
    cp "$(dpkg -L libsimpleini-dev | grep '/SimpleIni.h$')" "$prefix/include/"
}
