<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ko" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>종속 항목 다운로드 중 (%1/%2)<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>플래시</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>자동</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>끄기</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>적목 감소</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>보조광</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>화이트 밸런스</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>햇빛</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>흐림</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>텅스텐</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>형광등</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>대비</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>채도</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>선명도</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>방향</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>카메라</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>캡처</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>이미지</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>%1에 로그인하는 중</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>%1에 로그인</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>사용자 이름</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>비밀번호</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>사용자 이름 저장</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>로그인하는 중</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>로그인</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>취소</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>포털</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>활성 Zemrik 포털 선택</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>Zemrik용 포털의 URL</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>SSL 오류 무시</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>포털 추가</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform을 사용하려면 Portal for Zemrik 10.3.1에 호스팅 서버와 Zemrik Data Store가 구성되어 있어야 합니다</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>이 URL에 포털이 없습니다</translation>
    </message>
</context>
</TS>
