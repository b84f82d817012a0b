<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="vi" sourcelanguage="en">
<context>
    <name>AppPackage</name>
    <message>
        <source>Downloading dependency %1 of %2<byte value="xd"/>
%3</source>
        <translation>Đang tải xuống phần phụ thuộc %1 trên %2<byte value="xd"/>
%3</translation>
    </message>
</context>
<context>
    <name>CameraProperties</name>
    <message>
        <source>Flash</source>
        <translation>Đèn flash</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Tự động</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Tắt</translation>
    </message>
    <message>
        <source>Red Eye</source>
        <translation>Mắt đỏ</translation>
    </message>
    <message>
        <source>Fill</source>
        <translation>Bù sáng</translation>
    </message>
    <message>
        <source>White Balance</source>
        <translation>Cân bằng trắng</translation>
    </message>
    <message>
        <source>Sunlight</source>
        <translation>Ánh nắng</translation>
    </message>
    <message>
        <source>Cloudy</source>
        <translation>Nhiều mây</translation>
    </message>
    <message>
        <source>Tungsten</source>
        <translation>Đèn sợi đốt</translation>
    </message>
    <message>
        <source>Fluorescent</source>
        <translation>Đèn huỳnh quang</translation>
    </message>
    <message>
        <source>Contrast</source>
        <translation>Độ tương phản</translation>
    </message>
    <message>
        <source>Saturation</source>
        <translation>Độ bão hòa</translation>
    </message>
    <message>
        <source>Sharpening</source>
        <translation>Độ sắc nét</translation>
    </message>
    <message>
        <source>Orientation</source>
        <translation>Hướng</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>Máy ảnh</translation>
    </message>
</context>
<context>
    <name>ImageCaptureDialog</name>
    <message>
        <source>Capture</source>
        <translation>Chụp ảnh</translation>
    </message>
</context>
<context>
    <name>ImageChooserDialog</name>
    <message>
        <source>Images</source>
        <translation>Hình ảnh</translation>
    </message>
</context>
<context>
    <name>PortalDialog</name>
    <message>
        <source>Signing in to %1</source>
        <translation>Đang đăng nhập vào %1</translation>
    </message>
    <message>
        <source>Sign in to %1</source>
        <translation>Đăng nhập vào %1</translation>
    </message>
    <message>
        <source>Username</source>
        <translation>Tên người dùng</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mật khẩu</translation>
    </message>
    <message>
        <source>Remember me</source>
        <translation>Ghi nhớ tôi</translation>
    </message>
    <message>
        <source>Signing In</source>
        <translation>Đang đăng nhập</translation>
    </message>
    <message>
        <source>Sign In</source>
        <translation>Đăng nhập</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Hủy</translation>
    </message>
    <message>
        <source>Portals</source>
        <translation>Cổng thông tin</translation>
    </message>
    <message>
        <source>Select your active Zemrik Portal</source>
        <translation>Chọn cổng thông tin Zemrik bạn đang dùng</translation>
    </message>
    <message>
        <source>URL of your Portal for Zemrik</source>
        <translation>URL cổng thông tin Zemrik của bạn</translation>
    </message>
    <message>
        <source>Ignore SSL Errors</source>
        <translation>Bỏ qua lỗi SSL</translation>
    </message>
    <message>
        <source>Add Portal</source>
        <translation>Thêm cổng thông tin</translation>
    </message>
    <message>
        <source>Quillform requires that Portal for Zemrik 10.3.1 is configured with a Hosted Server and Zemrik Data Store</source>
        <translation>Quillform yêu cầu Portal for Zemrik 10.3.1 được cấu hình với máy chủ lưu trữ và Zemrik Data Store</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>There is no portal at this URL</source>
        <translation>Không có cổng thông tin nào tại URL này</translation>
    </message>
</context>
</TS>
