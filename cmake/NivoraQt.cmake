# Qt for the code that paints pages and pictures, and for the folders that have windows.

find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)

if(NIVORA_WIDGETS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets PrintSupport)
endif()

# nivora_strict_qt(<target>)
#
# Runs moc where it is needed and disables what we do not use of Qt: texts are never taken as Latin-1, signals are
# never connected by their names, and every connection has a context object.
function(nivora_strict_qt target)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
        QT_NO_CONTEXTLESS_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()
