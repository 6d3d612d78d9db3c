#!/usr/bin/env bash
# Checks what the library exports, its soname, and the libraries that it needs. Usage: library.sh LIBRARY
set -u
library=${1:?library}
failures=0

fail() {
    echo "$1"
    failures=$((failures + 1))
}

factories="_ZN17ZoITrellanUpdater14createInstanceEN17ZoNTrellanUpdater10ZoTOptionsE
    _ZN19ZoITrellanInspector14createInstanceER17ZoITrellanUpdater"
symbols=$(nm -D --defined-only "$library" | awk '{print $NF}')
for factory in $factories; do
    grep -qx "$factory" <<<"$symbols" || fail "the factory $factory is not exported"
done
for symbol in $symbols; do
    case " $(tr -s '\n ' ' ' <<<"$factories") " in
        *" $symbol "*) continue ;;
    esac
    case $symbol in
        _ZT[VIS]17ZoITrellanUpdater | _ZT[VIS]19ZoITrellanInspector) ;;
        *) fail "$symbol ($(c++filt "$symbol")) must not be exported" ;;
    esac
done

dynamic=$(readelf -dW "$library")
grep -qF 'Library soname: [libZoTrellanUpdateLib.so.1]' <<<"$dynamic" ||
    fail "the soname is not libZoTrellanUpdateLib.so.1: $(grep SONAME <<<"$dynamic")"

needed=$(sed -nE 's/.*\(NEEDED\).*\[(.*)\]/\1/p' <<<"$dynamic")
maker="libZoErrorHandling libZoComposite libZoCompositeFactory libZoInventoryTree libZoInventoryManagerAP libZoJsonLib
    libZoRtosAbstraction"
for name in $maker; do
    grep -qE "^$name\.so(\.[0-9]+)*$" <<<"$needed" || fail "$name is not a needed library"
done
for name in $needed; do
    base=${name%%.so*}
    case " $(tr -s '\n ' ' ' <<<"$maker") " in
        *" $base "*) continue ;;
    esac
    case $base in
        libstdc++ | libm | libgcc_s | libc | ld-linux* | libasan | libubsan) ;;
        *) fail "$name must not be a needed library" ;;
    esac
done

[ "$failures" -eq 0 ] || exit 1
echo "the library exports its factories only and needs the maker's libraries only"
